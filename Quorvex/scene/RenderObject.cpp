#include <Quorvex/scene/RenderObject.h>

#include <Quorvex/scene/RenderObjectData.h>

namespace KOVA::Quorvex {

RenderObject::RenderObject(const RenderObjectAttribute& /*attribute*/) {}

RenderObject::RenderObject(RenderObjectData& data) {
    data.IncInstanceCounter();
}

RenderObject::RenderObject(RenderObjectData& data, const RenderObjectAttribute& /*attribute*/) : RenderObject(data) {}

RenderObject::~RenderObject() = default;

} // namespace KOVA::Quorvex
