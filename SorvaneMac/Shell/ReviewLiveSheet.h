#pragma once

#include <functional>

#include <QDialog>

#include "SorvaneMac/Platform/ReviewLivePublisher.h"

class QLabel;
class QPushButton;

namespace sorvane {

/// The panel that shows a live review: the code, whether an iPad has come, and how to end it.
///
/// Closing it, in whatever way, ends the publishing.
class BriselReviewLiveSheet final : public QDialog {
public:
    /// `onExportPacket` writes the packet to a file instead.
    BriselReviewLiveSheet(QWidget* parent,
                          BriselReviewLivePublisher& publisher,
                          std::function<void()> onExportPacket);

    void done(int result) override;

private:
    void refresh();

    BriselReviewLivePublisher& publisher_;
    QLabel* lead_;
    QLabel* code_;
    QLabel* host_;
    QLabel* state_;
    QLabel* problem_;
    QLabel* failure_;
    QPushButton* stop_;
    Subscription changes_;
};

}  // namespace sorvane
