#include <Quorvex/core/Facade.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/view/View.h>

namespace KOVA::Quorvex {

// Stands here because only frames know which view they look through.
void View::Render() {
    for (RenderFrame* frame : Quorvex::s_vRenderFrames) {
        if (frame->GetView() == this) {
            frame->Render();
        }
    }
}

} // namespace KOVA::Quorvex
