#include "app/ConsoleTools.h"

#include "app/ConsoleSearch.h"
#include "app/ConsoleView.h"
#include "app/LoaderWidgets.h"

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

} // namespace

ConsoleTools::ConsoleTools(ConsoleView* view, QGroupBox* frame, std::function<void()> save)
    : TitleRow(frame, kRightMargin), m_view(view), m_search(new ConsoleSearch(view)),
      m_findState(named(new QLabel(this), QStringLiteral("lblFind"))),
      m_txtFind(named(new QLineEdit(this), QStringLiteral("txtFind"))) {
    layout()->setSpacing(2);
    addWidget(m_findState);
    addWidget(m_txtFind);
    m_txtFind->setPlaceholderText(QStringLiteral("Find"));
    m_txtFind->setAccessibleName(QStringLiteral("Find in the console"));
    m_txtFind->setToolTip(QStringLiteral("Enter: next, Shift+Enter: previous, Escape: back to the console"));
    m_txtFind->setFixedWidth(kFindCharacters * fontMetrics().averageCharWidth());
    m_hold =
        addButton("tglHold", QStringLiteral("Hold"),
                  QStringLiteral("Stops the view, not the text (Scroll Lock). End goes back to the end."));
    m_hold->setCheckable(true);
    m_find =
        addButton("cmdFind", QStringLiteral("Find"), QStringLiteral("Ctrl+F, in terminal mode Ctrl+Shift+F"));
    m_clear = addButton("cmdClear", QStringLiteral("Clear"),
                        QStringLiteral("Empties the view. \"Save\" still writes the whole text."));
    m_save = addButton("cmdSaveConsole", QStringLiteral("Save…"),
                       QStringLiteral("Writes the whole text of the console into a file"));

    m_more = named(new QToolButton(view->viewport()), QStringLiteral("cmdMore"));
    m_more->setText(QStringLiteral("More below"));
    m_more->setArrowType(Qt::DownArrow);
    m_more->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_more->setCursor(Qt::ArrowCursor);
    m_more->setFocusPolicy(Qt::NoFocus);
    m_more->setToolTip(QStringLiteral("New text has come. End goes to it."));
    m_more->hide();

    connect(m_hold, &QToolButton::toggled, view, &ConsoleView::setHeld);
    connect(m_more, &QToolButton::clicked, view, [view] { view->setHeld(false); });
    connect(view, &ConsoleView::holdChanged, this, &ConsoleTools::showHold);
    connect(m_find, &QToolButton::clicked, this, &ConsoleTools::openFind);
    connect(view, &ConsoleView::findRequested, this, &ConsoleTools::openFind);
    connect(m_clear, &QToolButton::clicked, view, [view] {
        view->clearView();
        view->setFocus();
    });
    connect(m_save, &QToolButton::clicked, this, std::move(save));
    connect(view, &ConsoleView::cleared, m_search, &ConsoleSearch::stop);
    connect(m_search, &ConsoleSearch::found, this, [this](const QTextCursor& found) {
        m_findState->hide();
        m_view->showFound(found);
    });
    connect(m_search, &ConsoleSearch::notFound, this, [this] {
        m_findState->setText(QStringLiteral("not found"));
        m_findState->show();
    });
    m_txtFind->installEventFilter(this);
    view->viewport()->installEventFilter(this);
    closeFind();
}

QList<QWidget*> ConsoleTools::tabOrder() const {
    return {m_txtFind, m_hold, m_find, m_clear, m_save};
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

void ConsoleTools::showHold(bool held, bool more) {
    const QSignalBlocker notAClick(m_hold);
    m_hold->setChecked(held);
    m_more->setVisible(more);
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
    if (event->type() == QEvent::Resize && watched == m_view->viewport())
        placeMark();
    if (watched != m_txtFind || event->type() != QEvent::KeyPress)
        return TitleRow::eventFilter(watched, event);
    const auto& press = *static_cast<QKeyEvent*>(event);
    if (press.key() == Qt::Key_Escape) {
        closeFind();
        m_view->setFocus();
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
    const QSize mark = m_more->sizeHint();
    const QSize view = m_view->viewport()->size();
    m_more->setGeometry(view.width() - mark.width() - kRightMargin, view.height() - mark.height() - 2,
                        mark.width(), mark.height());
}

} // namespace zrk
