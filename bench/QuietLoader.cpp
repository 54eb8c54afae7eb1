#include "QuietLoader.h"

#include "boot/WaitDialogView.h"
#include "platform/FileDialog.h"
#include "platform/MessageBoxes.h"

#include <QFile>

#include <stdexcept>

namespace zrkbench {

class QuietLoader::Person final : public zrk::MessageBoxes,
                                  public zrk::FileDialog,
                                  public zrk::WaitDialogView {
  public:
    zrk::Answer show(const zrk::MessageBox& box) override {
        said += box.prompt; // not thrown: a timer's tick may show it
        return box.buttons == zrk::MessageButtons::Ok ? zrk::Answer::Ok : zrk::Answer::Yes;
    }
    QString openFile(const zrk::FileRequest& /*request*/) override { return {}; }
    void show(zrk::WaitDialog& /*dialog*/) override {}
    void hide() override {}

    QString said;
};

QuietLoader::QuietLoader(const QString& device, std::optional<std::uint32_t> lineRate)
    : m_person(std::make_unique<Person>()),
      m_ports(m_loop, zrk::PortNames({{1, device}}), {std::chrono::seconds(10), 1 << 20, lineRate}),
      m_loader(std::make_unique<zrk::Loader>(
          zrk::LoaderSurroundings{m_loop, m_ports, *m_person, *m_person, *m_person}, m_folder.path())) {
    m_loader->startUp.prepare({});
}

QuietLoader::~QuietLoader() = default;

QString QuietLoader::file(const QString& name, const QByteArray& content) const {
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot write the file " + name.toStdString());
    return file.fileName();
}

const QString& QuietLoader::said() const {
    return m_person->said;
}

} // namespace zrkbench
