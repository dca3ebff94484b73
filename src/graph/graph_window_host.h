#pragma once
// The callbacks of the graph windows into the program, and all they know about it.
#include "base/geometry.h"
#include "settings/app_settings.h"

namespace kestrane {

class GraphWindowHost {
  public:
    virtual ~GraphWindowHost() = default;

    /// A right click on the window, or the context-menu key; show the menu at `screenPoint`. The window may be gone
    /// when this returns.
    virtual void ShowGraphMenu(GraphKind kind, Point screenPoint) = 0;
    /// A left click that did not move the window, which is not pinned.
    virtual void GraphClicked(GraphKind kind) = 0;
    /// The window state in the settings has changed and must be saved.
    virtual void GraphStateChanged(GraphKind kind) = 0;

  protected:
    GraphWindowHost() = default;
    GraphWindowHost(const GraphWindowHost&) = default;
    GraphWindowHost& operator=(const GraphWindowHost&) = default;
};

}  // namespace kestrane
