#pragma once

#include "machine/PortNames.h"
#include "machine/SystemPorts.h"

namespace zrk {

/// The catalog of the machine's ports, first those that have a number in this program.
class MachineCatalog final : public PortCatalog {
  public:
    /// `more` are further devices that the user has named, which have no number.
    explicit MachineCatalog(PortNames names, QStringList more = {}, PortPlaces places = {});

    [[nodiscard]] std::vector<PortEntry> ports() const override;

  private:
    PortNames m_names;
    QStringList m_more;
    PortPlaces m_places;
};

} // namespace zrk
