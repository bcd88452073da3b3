#include "SorvaneMac/Shell/ReviewSharing.h"

#include "SorvaneMac/Review/ReviewWording.h"
#include "SorvaneMac/Shell/FileSaving.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/ReviewDesk.h"
#include "SorvaneMac/Shell/ReviewLiveSheet.h"

namespace sorvane {

void exportToIPad(QWidget* parent, Workspace& workspace) {
    using ReviewBundleExporter::DataPreview;
    StudioState& state = workspace.state;
    if (!ReviewBundleExporter::hasAnything(state)) {
        state.saveStatusMessage.set(std::string(ReviewWording::nothingToExport));
        return;
    }
    PacketExport& packets = workspace.desk->packets;
    const std::optional<std::filesystem::path> file =
        workspace.dialogs.save(parent, {.title = qtText(ReviewWording::panelTitle),
                                        .suggestedName = suggestedFileName(state.dataset(), "bsk"),
                                        .filter = "Presentation packet (*.bsk)",
                                        .message = qtText(ReviewWording::panelMessage),
                                        .acceptLabel = qtText(ReviewWording::panelButton),
                                        .folder = packets.lastFolder()});
    if (file) {
        packets.exportToIPad(*file, state.sharing.packetHasPreview.get() ? DataPreview::leadingRows
                                                                         : DataPreview::none);
    }
}

void presentOnIPad(QWidget* parent, Workspace& workspace) {
    BriselReviewLivePublisher& publisher = workspace.desk->publisher;
    if (!presentOnIPad(workspace.state, publisher)) {
        return;
    }
    if (workspace.desk->sheet) {
        workspace.desk->sheet->raise();
        return;
    }
    auto* sheet = new BriselReviewLiveSheet(
        parent->window(), publisher,
        {.onExportPacket = [window = parent->window(),
                            &workspace] { exportToIPad(window, workspace); },
         .onUpdatePacket =
             [&workspace, &publisher] {
                 return publishLive(workspace.state, publisher);
             }});
    workspace.desk->sheet = sheet;
    sheet->show();
}

}  // namespace sorvane
