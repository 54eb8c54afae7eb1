#include "app/ConsoleTools.h"

#include "app/ConsoleSearch.h"
#include "app/ConsoleView.h"
#include "app/LoaderWidgets.h"
#include "app/terminal/ScreenView.h"

#include <QAction>
#include <QEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolButton>

namespace zrk {
namespace {

constexpr int kFindCharacters = 18;
constexpr int kRightMargin = 6;
const QString kFindToolTip = QStringLiteral("Ctrl+F, in terminal mode Ctrl+Shift+F");

} // namespace

ConsoleTools::ConsoleTools(ConsoleViews views, QGroupBox* frame, std::function<void()> save)
    : TitleRow(frame, kRightMargin), m_views(views), m_frame(frame), m_search(new ConsoleSearch(views.text)),
      m_findState(named(new QLabel(this), QStringLiteral("lblFind"))),
      m_txtFind(named(new QLineEdit(this), QStringLiteral("txtFind"))) {
    fillRow();
    connectViews();
    connect(m_hold, &QToolButton::toggled, this, &ConsoleTools::setHeld);
    connect(m_more, &QToolButton::clicked, this, [this] { setHeld(false); });
    connect(m_find, &QToolButton::clicked, this, &ConsoleTools::openFind);
    connect(m_clear, &QToolButton::clicked, this, &ConsoleTools::clear);
    connect(m_save, &QToolButton::clicked, this, std::move(save));
    connect(m_search, &ConsoleSearch::found, this, [this](const QTextCursor& found) {
        m_findState->hide();
        m_views.text->showFound(found);
    });
    connect(m_search, &ConsoleSearch::notFound, this, [this] {
        m_findState->setText(QStringLiteral("not found"));
        m_findState->show();
    });
    m_txtFind->installEventFilter(this);
    closeFind();
}

void ConsoleTools::fillRow() {
    layout()->setSpacing(2);
    addWidget(m_findState);
    addWidget(m_txtFind);
    m_txtFind->setPlaceholderText(QStringLiteral("Find"));
    m_txtFind->setAccessibleName(QStringLiteral("Find in the console"));
    m_txtFind->setToolTip(QStringLiteral("Enter: next, Shift+Enter: previous, Escape: back to the console"));
    m_txtFind->setFixedWidth(kFindCharacters * fontMetrics().averageCharWidth());
    m_screen = addButton("tglScreen", QString(), QString());
    m_hold =
        addButton("tglHold", QStringLiteral("Hold"),
                  QStringLiteral("Stops the view, not the text (Scroll Lock). End goes back to the end."));
    m_hold->setCheckable(true);
    m_find = addButton("cmdFind", QStringLiteral("Find"), kFindToolTip);
    m_clear = addButton("cmdClear", QStringLiteral("Clear"),
                        QStringLiteral("Empties the view. \"Save\" still writes the whole text."));
    m_save = addButton("cmdSaveConsole", QStringLiteral("Save…"),
                       QStringLiteral("Writes the whole text of the console into a file"));

    // Beside the views: what a view has in itself moves with its text.
    m_more = named(new QToolButton(m_frame), QStringLiteral("cmdMore"));
    m_more->setText(QStringLiteral("More below"));
    m_more->setArrowType(Qt::DownArrow);
    m_more->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_more->setCursor(Qt::ArrowCursor);
    m_more->setFocusPolicy(Qt::NoFocus);
    m_more->setToolTip(QStringLiteral("New text has come. End goes to it."));
    m_more->hide();
}

void ConsoleTools::connectViews() {
    connect(m_views.text, &ConsoleView::holdChanged, this, [this](bool held, bool more) {
        m_textHold = {held, more};
        showHold();
    });
    connect(m_views.screen, &ScreenView::holdChanged, this, [this](bool held, bool more) {
        m_screenHold = {held, more};
        showHold();
    });
    connect(m_views.text, &ConsoleView::findRequested, this, &ConsoleTools::openFind);
    connect(m_views.text, &ConsoleView::cleared, m_search, &ConsoleSearch::stop);
    m_views.text->viewport()->installEventFilter(this);
    m_views.screen->viewport()->installEventFilter(this);
}

void ConsoleTools::addScreenEntry(QAction* entry) {
    m_screen->setDefaultAction(entry);
}

bool ConsoleTools::isScreen() const {
    return !m_views.screen->isHidden();
}

QAbstractScrollArea* ConsoleTools::shownView() const {
    return isScreen() ? static_cast<QAbstractScrollArea*>(m_views.screen) : m_views.text;
}

void ConsoleTools::followShownView() {
    if (isScreen())
        closeFind();
    m_find->setEnabled(!isScreen());
    m_find->setToolTip(isScreen() ? QStringLiteral("The text view finds text: switch Screen off first.")
                                  : kFindToolTip);
    showHold();
}

void ConsoleTools::setHeld(bool held) {
    if (isScreen())
        m_views.screen->setHeld(held);
    else
        m_views.text->setHeld(held);
}

void ConsoleTools::clear() {
    if (isScreen())
        m_views.screen->reset();
    else
        m_views.text->clearView();
    shownView()->setFocus();
}

QList<QWidget*> ConsoleTools::tabOrder() const {
    return {m_txtFind, m_screen, m_hold, m_find, m_clear, m_save};
}

QToolButton* ConsoleTools::addButton(const char* name, const QString& text, const QString& toolTip) {
    auto* button = named(new QToolButton(this), QLatin1String(name));
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    addWidget(button);
    return button;
}

void ConsoleTools::showHold() {
    const Hold& hold = isScreen() ? m_screenHold : m_textHold;
    const QSignalBlocker notAClick(m_hold);
    m_hold->setChecked(hold.isHeld);
    m_more->setVisible(hold.hasMore);
    placeMark();
}

void ConsoleTools::openFind() {
    m_txtFind->show();
    m_findState->hide();
    m_txtFind->setFocus();
    m_txtFind->selectAll();
}

void ConsoleTools::closeFind() {
    m_search->stop();
    m_txtFind->hide();
    m_findState->hide();
}

bool ConsoleTools::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && watched == shownView()->viewport())
        placeMark();
    if (watched != m_txtFind || event->type() != QEvent::KeyPress)
        return TitleRow::eventFilter(watched, event);
    const auto& press = *static_cast<QKeyEvent*>(event);
    if (press.key() == Qt::Key_Escape) {
        closeFind();
        shownView()->setFocus();
        return true;
    }
    if (press.key() != Qt::Key_Return && press.key() != Qt::Key_Enter)
        return false;
    m_search->start(m_txtFind->text(), press.modifiers().testFlag(Qt::ShiftModifier)
                                           ? ConsoleSearch::Direction::Backward
                                           : ConsoleSearch::Direction::Forward);
    return true;
}

void ConsoleTools::placeMark() {
    const QWidget& view = *shownView()->viewport();
    const QSize mark = m_more->sizeHint();
    const QPoint corner = view.mapTo(m_frame, view.rect().bottomRight());
    m_more->setGeometry(corner.x() - mark.width() - kRightMargin, corner.y() - mark.height() - 2,
                        mark.width(), mark.height());
    m_more->raise();
}

} // namespace zrk
