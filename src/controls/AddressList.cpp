#include "controls/AddressList.h"

#include <algorithm>

namespace zrk {

void AddressList::clear() {
    m_rows.clear();
    changed();
}

void AddressList::add(Row row) {
    const auto place = std::lower_bound(m_rows.cbegin(), m_rows.cend(), row,
                                        [](const Row& a, const Row& b) { return a.start < b.start; });
    m_rows.insert(place, std::move(row));
    changed();
}

void AddressList::mark(const QString& index) {
    for (Row& row : m_rows)
        row.conflicts = row.conflicts || row.index == index;
    changed();
}

void AddressList::changed() const {
    if (m_listener)
        m_listener();
}

} // namespace zrk
