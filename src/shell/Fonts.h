#pragma once

#include "system/Handle.h"

namespace tessera {

// The four fonts that the panes share. A font that cannot be made is the assertion box, and none.
class Fonts {
public:
    void create();
    void destroy();

    HFONT combo() const { return m_pfntCombo.get(); }
    HFONT wizardCaption() const { return m_pfntWizardCaption.get(); }
    HFONT list() const { return m_fntList.get(); }
    HFONT boldList() const { return m_fntListBold.get(); }

private:
    FontHandle m_pfntCombo;
    FontHandle m_pfntWizardCaption;
    FontHandle m_fntList;
    FontHandle m_fntListBold;
};

} // namespace tessera
