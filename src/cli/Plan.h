#pragma once

#include "cli/Options.h"

#include <QStringList>

namespace zrk {

struct Loader;

/// What the steps will do with the slots as they are filled now.
class Plan {
  public:
    Plan(Loader& loader, const std::vector<Step>& steps) : m_loader(loader), m_steps(steps) {}

    /// Throws UsageError when a step would use a slot whose address the entry rule had to change. A selected
    /// slot of that kind that no step uses is left out, so that it stops none.
    void checkAddresses();

    /// What goes over the line: the port and its device, then for each image, in the order of sending, its
    /// file, bytes, line time and address. Empty when the steps need no port.
    [[nodiscard]] QStringList announcement() const;

  private:
    [[nodiscard]] bool isSelected(int slot) const;
    [[nodiscard]] bool has(Step step) const;
    [[nodiscard]] std::vector<int> imagesOf(Step step) const;
    [[nodiscard]] bool uses(int slot) const;
    [[nodiscard]] QString imageLine(int slot) const;

    Loader& m_loader;
    const std::vector<Step>& m_steps;
};

} // namespace zrk
