#include <Quorvex/overlay/Overlay.h>

namespace KOVA::Quorvex {

Overlay::Overlay() : m_data(new OverlayData) {}

Overlay::Overlay(OverlayData& data) : m_data(&data) {
    m_data->IncInstanceCounter();
}

Overlay::Overlay(const Overlay& other) : Overlay(*other.m_data) {}

Overlay& Overlay::operator=(const Overlay& other) {
    if (this != &other) {
        other.m_data->IncInstanceCounter(); // first: both may be on the same data
        LetGo();
        m_data = other.m_data;
    }
    return *this;
}

Overlay::~Overlay() {
    LetGo();
}

void Overlay::LetGo() {
    if (m_data->DecInstanceCounter() == 0) {
        delete m_data;
    }
}

void Overlay::Render(RenderFrame& frame) const {
    m_data->Render(frame);
}

} // namespace KOVA::Quorvex
