#pragma once

#include <Quorvex/core/Export.h>

namespace KOVA::Quorvex {

class RenderFrame;
class RenderObjectAttribute;
class RenderObjectData;

// What a scene holds and draws. A concrete object keeps a pointer to its data (shared, counted by the instance counter
// of RenderObjectData) and one to its attribute (its own).
//
// The sharing rule: data is created with counter 1, its creator's reference; every render object on it adds one, and
// takes it off when it goes. The object whose going brings the counter back to 1 deletes the data. So data handed to
// one object lives as long as that object, shared data as long as the last of its objects, and data that was never
// handed to an object is the creator's to delete.
class QUORVEX_API RenderObject {
public:
    // Draws the object into the current context of the frame. quality is false in a fast pass. False means that the
    // pass has to stop.
    virtual bool Render(RenderFrame& frame, bool quality) const = 0;

protected:
    RenderObject() = default;
    explicit RenderObject(const RenderObjectAttribute& attribute);
    explicit RenderObject(RenderObjectData& data); // counts one more object on the data
    RenderObject(RenderObjectData& data, const RenderObjectAttribute& attribute);

    // What is shared is the derived class's business.
    RenderObject(const RenderObject& /*other*/) = default;
    RenderObject& operator=(const RenderObject& /*other*/) = default;

    virtual ~RenderObject();
};

} // namespace KOVA::Quorvex
