#pragma once

#include <functional>

#include <QDialog>

#include "SorvaneMac/Platform/ReviewLivePublisher.h"

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace sorvane {

/// The panel that shows a live review: the code, whether an iPad has come, and how to end it.
///
/// Closing it, in whatever way, ends the publishing.
class BriselReviewLiveSheet final : public QDialog {
public:
    struct Actions {
        /// Writes the packet to a file instead.
        std::function<void()> onExportPacket;
        /// Builds the packet anew; says whether it could be built.
        std::function<bool()> onUpdatePacket;
    };

    BriselReviewLiveSheet(QWidget* parent, BriselReviewLivePublisher& publisher, Actions actions);

    void done(int result) override;

private:
    void addButtons(QVBoxLayout& column, Actions actions);
    void renew(const std::function<bool()>& onUpdatePacket);
    void refresh();

    BriselReviewLivePublisher& publisher_;
    QLabel* lead_;
    QLabel* code_;
    QLabel* host_;
    QLabel* state_;
    QLabel* updated_;
    QLabel* problem_;
    QLabel* failure_;
    QPushButton* update_ = nullptr;
    QPushButton* stop_ = nullptr;
    Subscription changes_;
};

}  // namespace sorvane
