#include "SorvaneMac/Shell/CardFrame.h"

#include <QVBoxLayout>
#include <QVariant>

#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

CardFrame::CardFrame(const QString& title, const QString& subtitle) : body_(new QVBoxLayout(this)) {
    setProperty("card", true);
    const int side = Theme::px(16);
    body_->setContentsMargins(side, Theme::px(13), side, Theme::px(14));
    body_->setSpacing(Theme::px(8));
    if (!title.isEmpty()) {
        auto* head = new QVBoxLayout;
        head->setSpacing(Theme::px(2));
        head->addWidget(Labels::text(title, "cardTitle"));
        if (!subtitle.isEmpty()) {
            head->addWidget(Labels::text(subtitle, "small"));
        }
        body_->addLayout(head);
    }
}

}  // namespace sorvane
