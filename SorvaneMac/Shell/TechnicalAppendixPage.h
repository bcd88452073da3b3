#pragma once

#include "SorvaneMac/Shell/ContentPage.h"

namespace sorvane {

/// Technical Appendix: its content, and the button that saves the record in the preview.
class TechnicalAppendixPage final : public ContentPage {
public:
    explicit TechnicalAppendixPage(Workspace& workspace);

private:
    void save();
};

}  // namespace sorvane
