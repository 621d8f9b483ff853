#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/overlay/OverlayData.h>

namespace KOVA::Quorvex {

class RenderFrame;

// Points and lines as an object of a scene. Copies share the data (see OverlayData's counter), so that what is added to
// it later shows in all of them.
class QUORVEX_API Overlay {
public:
    Overlay();                           // on data of its own
    explicit Overlay(OverlayData& data); // on existing data, which has to outlive it unless the overlays own it
    Overlay(const Overlay& other);
    Overlay& operator=(const Overlay& other);
    virtual ~Overlay();

    OverlayData& GetData() const { return *m_data; }

    // Draws the data: see OverlayData::Render.
    void Render(RenderFrame& frame) const;

    // The same data.
    bool operator==(const Overlay& other) const { return m_data == other.m_data; }
    bool operator!=(const Overlay& other) const { return !(*this == other); }

private:
    void LetGo();

    OverlayData* m_data;
};

} // namespace KOVA::Quorvex
