#include "app/Disclosure.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace zrk {

Disclosure::Disclosure(const QString& title, QWidget* parent)
    : QWidget(parent), m_toggle(new QToolButton(this)) {
    m_toggle->setObjectName(QStringLiteral("tglDebug"));
    m_toggle->setAutoRaise(true);
    m_toggle->setCheckable(true);
    m_toggle->setText(title);
    m_toggle->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_toggle->setArrowType(Qt::RightArrow);
    m_toggle->setFocusPolicy(Qt::StrongFocus);

    m_content = new QWidget(this);
    m_row = new QHBoxLayout(m_content);
    m_row->setContentsMargins(0, 0, 0, 0);
    QSizePolicy policy = m_content->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_content->setSizePolicy(policy);
    m_content->hide();

    m_line = new QHBoxLayout(this);
    m_line->setContentsMargins(0, 0, 0, 0);
    m_line->addWidget(m_toggle);
    m_line->addWidget(m_content, 1);
    connect(m_toggle, &QToolButton::toggled, this, [this](bool open) {
        m_content->setVisible(open);
        m_toggle->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
    });
}

void Disclosure::unfoldToTheLeft() {
    m_line->setDirection(QBoxLayout::RightToLeft);
}

void Disclosure::addWidget(QWidget* widget, int stretch) {
    m_row->addWidget(widget, stretch);
}

} // namespace zrk
