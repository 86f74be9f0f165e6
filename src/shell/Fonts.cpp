#include "shell/Fonts.h"

#include "base/Errors.h"
#include "shell/HostRegistry.h"
#include "windowing/Control.h"
#include "windowing/Drawing.h"

#include <cstring>

namespace tessera {

namespace {

constexpr const char* kUnit = "TesseraMain";

LOGFONTA tahoma(LONG height)
{
    LOGFONTA font{};
    font.lfHeight = height;
    std::strcpy(font.lfFaceName, "Tahoma");
    return font;
}

// A positive height is that of a line, a negative one that of its characters.
LOGFONTA comboFont(HDC screen)
{
    return tahoma(scaled(14, screen));
}

LOGFONTA wizardCaptionFont(HDC screen)
{
    LOGFONTA font = tahoma(-scaled(12, screen));
    font.lfWeight = FW_BOLD;
    font.lfQuality = ANTIALIASED_QUALITY;
    return font;
}

LOGFONTA listFont()
{
    if (const std::optional<LOGFONTA> font = hostListFont()) {
        return *font;
    }
    LOGFONTA font{};
    GetObjectA(defaultFont(), sizeof font, &font);
    return font;
}

} // namespace

void Fonts::create()
{
    const WindowDc screen;
    const LOGFONTA lf = comboFont(screen.dc());
    m_pfntCombo = makeFont(lf);
    if (!m_pfntCombo) {
        assertionFailed("m_pfntCombo->CreateFontIndirect( &lf )", kUnit, __LINE__);
    }
    m_pfntWizardCaption = makeFont(wizardCaptionFont(screen.dc()));
    TESSERA_ASSERT(m_pfntWizardCaption, kUnit);
    LOGFONTA list = listFont();
    m_fntList = makeFont(list);
    list.lfWeight = FW_BOLD;
    m_fntListBold = makeFont(list);
}

void Fonts::destroy()
{
    m_pfntCombo.reset();
    m_pfntWizardCaption.reset();
    m_fntList.reset();
    m_fntListBold.reset();
}

} // namespace tessera
