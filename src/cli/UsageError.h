#pragma once

#include <QString>

#include <stdexcept>

namespace zrk {

/// A command line or configuration that cannot be carried out; what() says what is wrong with it.
class UsageError : public std::runtime_error {
  public:
    explicit UsageError(const QString& text) : std::runtime_error(text.toStdString()) {}
};

} // namespace zrk
