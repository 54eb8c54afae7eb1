#include "app/AboutBox.h"

#include "app/Identity.h"
#include "app/LoaderWidgets.h"
#include "app/SystemInfo.h"
#include "loader/ThisProgram.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace zrk {
namespace {

constexpr int kIconSide = 32;
constexpr int kTextWidth = 320;

QLabel* makeText(const QString& name, QWidget* parent) {
    auto* label = named(new QLabel(parent), name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(kTextWidth);
    return label;
}

QFrame* makeLine(int index, QWidget* parent) {
    auto* line = named(new QFrame(parent), arrayName("Line1", static_cast<std::size_t>(index)));
    line->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    return line;
}

QLabel* makeIcon(QWidget* parent) {
    auto* icon = named(new QLabel(parent), QStringLiteral("picIcon"));
    icon->setPixmap(applicationIcon().pixmap(kIconSide));
    icon->setAccessibleName(QStringLiteral("Icon"));
    return icon;
}

} // namespace

AboutBox::AboutBox(SystemInfo& systemInfo, QWidget* parent) : QDialog(parent), m_systemInfo(systemInfo) {
    setObjectName(QStringLiteral("frmAbout"));
    m_lblTitle = makeText(QStringLiteral("lblTitle"), this);
    QFont titleFont = m_lblTitle->font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.3);
    m_lblTitle->setFont(titleFont);
    m_lblVersion = makeText(QStringLiteral("lblVersion"), this);
    QLabel* description = makeText(QStringLiteral("lblDescription"), this);
    description->setText(QStringLiteral("See ZRK6957 Getting Started document for full description."));
    QLabel* disclaimer = makeText(QStringLiteral("lblDisclaimer"), this);
    disclaimer->setText(QStringLiteral("Provided as is, without warranty of any kind: check what you have "
                                       "loaded before you rely on it."));
    auto* ok = named(new QPushButton(QStringLiteral("OK"), this), QStringLiteral("cmdOK"));
    ok->setDefault(true);
    auto* sysInfo =
        named(new QPushButton(QStringLiteral("&System Info..."), this), QStringLiteral("cmdSysInfo"));
    sysInfo->setAutoDefault(false);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(16, 16, 16, 16);
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(8);
    grid->addWidget(makeIcon(this), 0, 0, 2, 1, Qt::AlignTop);
    grid->addWidget(m_lblTitle, 0, 1, 1, 2);
    grid->addWidget(m_lblVersion, 1, 1, 1, 2);
    grid->addWidget(makeLine(0, this), 2, 1, 1, 2);
    grid->addWidget(description, 3, 1, 1, 2);
    grid->addWidget(makeLine(1, this), 4, 0, 1, 3);
    grid->addWidget(disclaimer, 5, 0, 2, 2, Qt::AlignTop);
    grid->addWidget(ok, 5, 2);
    grid->addWidget(sysInfo, 6, 2);
    grid->setColumnStretch(1, 1);
    grid->setSizeConstraint(QLayout::SetFixedSize);

    connect(ok, &QPushButton::clicked, this, &AboutBox::cmdOK_Click);
    connect(sysInfo, &QPushButton::clicked, this, &AboutBox::cmdSysInfo_Click);
    Form_Load();
}

void AboutBox::Form_Load() {
    setWindowTitle(QStringLiteral("About ") + applicationTitle());
    m_lblTitle->setText(applicationTitle());
    m_lblVersion->setText(QStringLiteral("Version ") + versionText());
}

void AboutBox::cmdOK_Click() {
    accept();
}

void AboutBox::cmdSysInfo_Click() {
    m_systemInfo.StartSysInfo();
}

} // namespace zrk
