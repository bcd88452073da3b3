#include <algorithm>
#include <tuple>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneMac/Report/ReportExporter.h"
#include "SorvaneMac/Report/RichDocument.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

std::string noteTitle(StudioScreen screen) {
    return "Researcher Notes: " + std::string(title(screen));
}

template <typename Items>
auto findTitled(Items& items, const std::string& title) {
    return std::find_if(items.begin(), items.end(),
                        [&title](const ReportItem& item) { return item.title == title; });
}

}  // namespace

void StudioState::addToReport(const ReportItem& item) {
    reportItems.edit([&item](std::vector<ReportItem>& items) {
        const auto same = std::find_if(items.begin(), items.end(), [&item](const ReportItem& each) {
            return each.id == item.id ||
                   (each.title == item.title && each.apaSummary == item.apaSummary);
        });
        if (same == items.end()) {
            items.push_back(item);
        } else {
            *same = item;
        }
    });
    postAction("autosave");
}

bool StudioState::isStaged(const ReportItem& item) const {
    // A screen makes its item anew each time it is shown, so identifier and picture do not count.
    const auto shown = [](const ReportItem& each) {
        return std::tie(each.title, each.apaSummary, each.table, each.extraTables, each.caution,
                        each.figureCaption, each.semDiagram);
    };
    return std::any_of(reportItems->begin(), reportItems->end(),
                       [&](const ReportItem& staged) { return shown(staged) == shown(item); });
}

void StudioState::removeFromReport(const Uuid& id) {
    reportItems.edit([&id](std::vector<ReportItem>& items) {
        std::erase_if(items, [&id](const ReportItem& item) { return item.id == id; });
    });
}

void StudioState::clearReport() {
    reportItems.set({});
    reportRTFData.set(std::nullopt);
}

void StudioState::assembleReport() {
    reportRTFData.replace(encode(
        ReportExporter::attributed(reportItems.get(), dataset().name, dataset().rowCount())));
}

std::string StudioState::trimmedNote(StudioScreen screen) const {
    const auto note = researcherNotes->find(std::string(rawValue(screen)));
    return note == researcherNotes->end() ? std::string()
                                          : std::string(UnicodeText::trimmed(note->second));
}

void StudioState::stageResearcherNote(StudioScreen screen) {
    const std::string note = trimmedNote(screen);
    if (note.empty()) {
        return;
    }
    reportItems.edit([&note, screen](std::vector<ReportItem>& items) {
        const auto staged = findTitled(items, noteTitle(screen));
        if (staged != items.end()) {
            staged->apaSummary = note;
            return;
        }
        ReportItem item;
        item.id = Uuid::fresh();
        item.title = noteTitle(screen);
        item.apaSummary = note;
        items.push_back(std::move(item));
    });
    postAction("autosave");
}

bool StudioState::researcherNoteIsStaged(StudioScreen screen) const {
    const std::string note = trimmedNote(screen);
    if (note.empty()) {
        return false;
    }
    const auto staged = findTitled(reportItems.get(), noteTitle(screen));
    return staged != reportItems->end() && staged->apaSummary == note;
}

}  // namespace sorvane
