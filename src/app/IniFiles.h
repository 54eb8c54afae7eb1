#pragma once

#include <QObject>
#include <QStringList>

class QAction;
class QMenu;

namespace zrk {

struct Loader;

/// The entries "Open INI file...", "Recent INI files" and "Save INI file as..." of the File menu.
class IniFiles : public QObject {
    Q_OBJECT

  public:
    static constexpr int kMostRecent = 5;

    /// Adds its entries to the menu, which owns it. Opened files are remembered in the file `store`, beyond
    /// the program's end; a store that cannot be written is ignored.
    IniFiles(QMenu& file, Loader& loader, QString store);

    [[nodiscard]] QAction* openEntry() const { return m_open; }
    [[nodiscard]] QAction* recentEntry() const;
    [[nodiscard]] QAction* saveEntry() const { return m_save; }

  private:
    void mnuOpenIni_Click();
    void mnuSaveIniAs_Click();
    void open(const QString& path);
    void save(const QString& path);
    void fillRecent();
    [[nodiscard]] QStringList recent() const;
    void keepRecent(const QStringList& paths) const;

    Loader& m_loader;
    QString m_store;
    QAction* m_open;
    QMenu* m_recent;
    QAction* m_save;
};

} // namespace zrk
