#include <Quorvex/volume/Volume.h>

#include <deque>

#include <Quorvex/volume/VolumeRenderer.h>

namespace KOVA::Quorvex {

namespace {

// Keeps sight of the data that volumes made for themselves: no volume deletes it, since other objects may hold it, and
// it is not lost either.
void KeepUntilProcessEnds(VolumeData* data) {
    static auto* const s_kept = new std::deque<VolumeData*>();
    s_kept->push_back(data);
}

} // namespace

Volume::Volume() : Volume(VolumeAttribute()) {}

Volume::Volume(const VolumeAttribute& attribute)
    : RenderObject(attribute), m_data(new VolumeData()), m_attribute(new VolumeAttribute(attribute)) {
    m_data->m_madeByVolume = true;
    KeepUntilProcessEnds(m_data);
}

Volume::Volume(VolumeData& data) : RenderObject(data), m_data(&data), m_attribute(new VolumeAttribute()) {}

Volume::Volume(VolumeData& data, const VolumeAttribute& attribute)
    : RenderObject(data, attribute), m_data(&data), m_attribute(new VolumeAttribute(attribute)) {}

Volume::Volume(const Volume& other)
    : RenderObject(*other.m_data, *other.m_attribute), m_data(other.m_data),
      m_attribute(new VolumeAttribute(*other.m_attribute)) {}

Volume& Volume::operator=(const Volume& other) {
    if (this != &other) {
        other.m_data->IncInstanceCounter(); // first, in case both share the data
        ReleaseData();
        m_data = other.m_data;
        *m_attribute = *other.m_attribute;
    }
    return *this;
}

Volume::~Volume() {
    ReleaseData();
    delete m_attribute;
}

void Volume::ReleaseData() {
    // The volume that made the data is not counted on it, so its copies count above 1 and the volume itself at 1.
    if (m_data->m_madeByVolume) {
        if (m_data->GetInstanceCounter() > 1) {
            m_data->DecInstanceCounter();
        }
        return;
    }
    if (m_data->DecInstanceCounter() == 1) {
        delete m_data;
    }
}

bool Volume::operator==(const Volume& other) const {
    return m_data == other.m_data && m_attribute == other.m_attribute;
}

bool Volume::Render(RenderFrame& frame, bool quality) const {
    return VolumeRenderer::Render(frame, quality, this);
}

RenderObjectData& Volume::data_ref() const {
    return *m_data;
}

RenderObjectAttribute& Volume::attribute_ref() const {
    return *m_attribute;
}

} // namespace KOVA::Quorvex
