#pragma once
// What the graph windows ask of the program, and all that they know of it.
#include "base/geometry.h"
#include "settings/app_settings.h"

namespace kestrane {

class GraphWindowHost {
  public:
    virtual ~GraphWindowHost() = default;

    /// A right click on the window, or the context-menu key; `screenPoint` is where the menu belongs. The window may be
    /// gone when this returns.
    virtual void ShowGraphMenu(GraphKind kind, Point screenPoint) = 0;
    /// A left press has ended without moving the window, which is not pinned.
    virtual void GraphClicked(GraphKind kind) = 0;
    /// The window state in the settings has changed and is to be saved.
    virtual void GraphStateChanged(GraphKind kind) = 0;

  protected:
    GraphWindowHost() = default;
    GraphWindowHost(const GraphWindowHost&) = default;
    GraphWindowHost& operator=(const GraphWindowHost&) = default;
};

}  // namespace kestrane
