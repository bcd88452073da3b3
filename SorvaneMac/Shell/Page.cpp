#include "SorvaneMac/Shell/Page.h"

#include "SorvaneMac/Shell/ContentPage.h"
#include "SorvaneMac/Shell/DataPreviewPage.h"
#include "SorvaneMac/Shell/ExportPage.h"
#include "SorvaneMac/Shell/FindingsPage.h"
#include "SorvaneMac/Shell/ImportPage.h"
#include "SorvaneMac/Shell/InstrumentMapPage.h"
#include "SorvaneMac/Shell/TechnicalAppendixPage.h"
#include "SorvaneMac/Shell/VariableTypesPage.h"

namespace sorvane {

Page* Page::make(StudioScreen screen, Workspace& workspace) {
    switch (screen) {
        case StudioScreen::importData:
            return new ImportPage(workspace);
        case StudioScreen::dataPreview:
            return new DataPreviewPage(workspace);
        case StudioScreen::instrumentMap:
            return new InstrumentMapPage(workspace);
        case StudioScreen::variableTypes:
            return new VariableTypesPage(workspace);
        case StudioScreen::findings:
            return new FindingsPage(workspace);
        case StudioScreen::technicalAppendix:
            return new TechnicalAppendixPage(workspace);
        case StudioScreen::export_:
            return new ExportPage(workspace);
        default:
            return new ContentPage(screen, workspace);
    }
}

}  // namespace sorvane
