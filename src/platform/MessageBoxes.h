#pragma once

#include <QString>

namespace zrk {

enum class MessageIcon { Exclamation, Information, Question };
enum class MessageButtons { Ok, YesNo };
enum class Answer { Ok, Yes, No };

struct MessageBox {
    QString prompt; ///< lines end with CR LF
    MessageIcon icon = MessageIcon::Exclamation;
    MessageButtons buttons = MessageButtons::Ok;
    QString title; ///< empty: the application's own title
};

/// Modal message boxes. The event loop keeps running while one is open.
class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;

    /// Shows the box and returns the user's answer; a closed Yes/No box counts as No. Yields.
    virtual Answer show(const MessageBox& box) = 0;
};

} // namespace zrk
