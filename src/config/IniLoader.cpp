#include "config/IniLoader.h"

#include "config/AddressEntry.h"
#include "config/ImageSlots.h"
#include "config/IniFile.h"
#include "config/Paths.h"
#include "files/PrintableText.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace zrk {
namespace {

/// More of them would fill the terminal, and the status bar, which lays out its whole text at each resize.
constexpr qsizetype kMostNameRemarks = 10;

/// Returns a name of the file as a part of a remark.
QString shown(const QString& name) {
    constexpr qsizetype kMost = 60;
    return printableText(name.left(kMost)) + (name.size() > kMost ? QStringLiteral("...") : QString());
}

bool isSame(const QString& name, const char* known) {
    return name.compare(QLatin1String(known), Qt::CaseInsensitive) == 0;
}

/// Returns the keys that count in a section; none if the section is unknown.
QStringList keysOf(const QString& section) {
    QStringList keys;
    for (const SlotFacts& known : kSlots) {
        if (isSame(section, known.section))
            keys += QString::fromLatin1(known.key);
    }
    return keys;
}

/// Returns what is wrong with a name in the file, or ""; `keys` are those that count in its section.
QString remarkOn(const IniEntry& name, const QStringList& keys) {
    const QString section = shown(name.section);
    if (!name.key)
        return keys.isEmpty()
                   ? QStringLiteral("unknown section [%1]; known are [BINFILES] and [IMGFILES].").arg(section)
                   : QString();
    if (name.section.isEmpty())
        return QStringLiteral("the key %1 comes before the first section.").arg(shown(*name.key));
    // The remark on an unknown section covers its keys.
    if (keys.isEmpty() || keys.contains(*name.key, Qt::CaseInsensitive))
        return {};
    return QStringLiteral("unknown key %1 in [%2]; known are %3.")
        .arg(shown(*name.key), section, keys.join(QStringLiteral(", ")));
}

/// A detector of sections and keys that have no effect because an earlier one has the same name.
class IniRepeats {
  public:
    /// Returns the remark on a known name that is repeated, or "". Call it for each name in turn.
    [[nodiscard]] QString remarkOn(const IniEntry& name, const QStringList& keys) {
        const QString section = name.section.toLower();
        if (!name.key) {
            m_keys.clear();
            m_ignored = m_sections.contains(section) && !keys.isEmpty();
            m_sections.insert(section);
            return m_ignored ? QStringLiteral("a second section [%1]; only the first counts.")
                                   .arg(shown(name.section))
                             : QString();
        }
        const QString key = name.key->toLower();
        const bool repeated = m_keys.contains(key) && keys.contains(key, Qt::CaseInsensitive);
        m_keys.insert(key);
        return repeated && !m_ignored ? QStringLiteral("a second %1 in [%2]; only the first counts.")
                                            .arg(*name.key, name.section)
                                      : QString();
    }

    /// Returns whether the present section and its keys have no effect.
    [[nodiscard]] bool inIgnoredSection() const { return m_ignored; }

  private:
    QSet<QString> m_sections;
    QSet<QString> m_keys; ///< of the present section
    bool m_ignored = false;
};

} // namespace

IniLoader::IniLoader(Desk& desk, ImageSlots& slots, AddressEntry& addresses)
    : m_desk(desk), m_slots(slots), m_addresses(addresses) {}

void IniLoader::mnuLoadIni_Click() {
    const IniFile file(m_desk.state.IniPath);
    std::array<IniValue, kSlotCount> values;
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = file.value(QString::fromLatin1(kSlots[i].section), QString::fromLatin1(kSlots[i].key));
        m_isNamed[i] = !values[i].text.isEmpty();
    }
    m_addressFaults.fill({});
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const IniValue& value = values[static_cast<std::size_t>(slot)];
        applyValue(slot, value.text);
        if (value.isCut)
            m_addressFaults[static_cast<std::size_t>(slot)] =
                QStringLiteral("the value is too long and is cut after %1 characters.")
                    .arg(value.text.size());
    }
    checkNames(file);
    const QStringList all = remarks();
    m_desk.state.Remark = {};
    if (!all.isEmpty())
        m_desk.state.Remark = {printableText(m_slots.paths().FileNameOf(m_desk.state.IniPath)) +
                                   QStringLiteral(": ") + all.join(QLatin1Char(' ')),
                               RemarkSeverity::Warning};
}

void IniLoader::usePath(const QString& path) {
    m_desk.state.IniPath = path;
    m_slots.resolveFrom(QDir::toNativeSeparators(QFileInfo(path).absolutePath()));
}

void IniLoader::openIni(const QString& path) {
    usePath(path);
    mnuLoadIni_Click();
    const QStringList kept = keptSlots();
    if (kept.isEmpty())
        return;
    QString& text = m_desk.state.Remark.text;
    text += (text.isEmpty() ? QString() : QStringLiteral(" ")) +
            QStringLiteral("Not in this file, kept from before: %1.").arg(kept.join(QStringLiteral(", ")));
    m_desk.state.Remark.severity = RemarkSeverity::Warning;
}

/// Returns the slots with a file that this INI file does not name but another one may.
QStringList IniLoader::keptSlots() const {
    QStringList kept;
    for (std::size_t i = 0; i < kSlots.size(); ++i) {
        if (!m_isNamed[i] && !m_desk.controls.txtFilNam[i].Tag.value().isEmpty())
            kept += m_desk.controls.slotTitle(i);
    }
    return kept;
}

void IniLoader::checkNames(const IniFile& file) {
    m_nameRemarks.clear();
    m_moreNameRemarks = 0;
    if (file.isTooLong()) {
        m_nameRemarks += QStringLiteral("The file has more than 1 MiB and was not read; shorten it.");
        return;
    }
    if (!file.isText()) {
        m_nameRemarks += QStringLiteral("The file is not readable text; save it as UTF-8.");
        return;
    }
    IniRepeats repeats;
    QStringList keys;
    for (const IniEntry& name : file.entries()) {
        if (!name.key)
            keys = keysOf(name.section);
        const QString repeat = repeats.remarkOn(name, keys);
        const QString remark =
            repeat.isEmpty() && !repeats.inIgnoredSection() ? remarkOn(name, keys) : repeat;
        if (remark.isEmpty())
            continue;
        if (m_nameRemarks.size() == kMostNameRemarks)
            ++m_moreNameRemarks;
        else
            m_nameRemarks += QStringLiteral("Line %1: ").arg(name.line) + remark;
    }
}

QStringList IniLoader::remarks() const {
    QStringList all = m_nameRemarks;
    if (m_moreNameRemarks > 0)
        all += QStringLiteral("And %1 more.").arg(m_moreNameRemarks);
    for (std::size_t i = 0; i < m_addressFaults.size(); ++i) {
        if (!m_addressFaults[i].isEmpty())
            all += QString::fromLatin1(kSlots[i].key) + QStringLiteral(": ") + m_addressFaults[i];
    }
    return all;
}

void IniLoader::applyValue(int slot, const QString& value) {
    if (value.isEmpty())
        return;
    const QStringList fields = value.split(QLatin1Char(','));
    applyFile(slot, m_slots.paths().ResolvePath(fields[0]),
              fields.size() > 1 ? fields[1].trimmed() : QStringLiteral("0"));
}

void IniLoader::applyFile(int slot, const QString& path, const QString& address) {
    if (!FileExists(path, true)) {
        clearSlot(slot, path);
        return;
    }
    m_addressFaults[static_cast<std::size_t>(slot)] = addressFault(slot, address);
    m_missingFiles[static_cast<std::size_t>(slot)].clear();
    m_desk.controls.txtStartAddress[static_cast<std::size_t>(slot)].Text = address;
    m_desk.controls.AddressRemark[static_cast<std::size_t>(slot)] = QString();
    m_addresses.txtStartAddress_Validate(slot);
    m_slots.fill(slot, path);
}

void IniLoader::clearSlot(int slot, const QString& path) {
    const auto i = static_cast<std::size_t>(slot);
    m_desk.controls.txtFilNam[i].Text = QStringLiteral("CAN'T FIND: ") + m_slots.paths().FileNameOf(path);
    m_desk.controls.txtFilNam[i].ToolTipText = QStringLiteral("File Not Found, check .INI file");
    m_desk.controls.txtFilNam[i].Tag = QString();
    m_desk.controls.txtStartAddress[i].Text = QString::fromLatin1(kSlots[i].addressWhenMissing);
    m_desk.controls.AddressRemark[i] = QString();
    m_desk.controls.lblCodeSize[i].Caption = QString();
    m_desk.controls.lblFileChanged[i].Caption = QString();
    m_desk.state.Sent[i] = std::nullopt;
    m_addressFaults[i].clear();
    m_missingFiles[i] = path;
    m_desk.controls.chkExeURK[i].Value = 0;
    if (slot == kPrimaryBoot)
        m_desk.controls.cmdStartPrimary.Enabled = false;
}

void IniLoader::emptySlot(int slot) {
    clearSlot(slot, QString());
    const auto i = static_cast<std::size_t>(slot);
    m_desk.controls.txtFilNam[i].Text = QString();
    m_desk.controls.txtFilNam[i].ToolTipText = QString();
}

void IniLoader::mnuWriteIni_Click() {
    m_desk.tell(QStringLiteral("Not yet implemented. Please edit ") + printableText(m_desk.state.IniPath) +
                    QStringLiteral(" yourselfes"),
                MessageIcon::Information, QStringLiteral("Not yet implemented"));
}

} // namespace zrk
