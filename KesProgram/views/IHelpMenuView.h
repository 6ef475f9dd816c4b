#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

/// The help menu. GUI thread.
class KES_EXPORT IHelpMenuView : public Kes::IView {
public:
    sigc::signal<void()> signalAbout;
    sigc::signal<void()> signalHelp;
};

} // namespace KesProgram
