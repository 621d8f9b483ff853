#include <cstring>
#include <stdexcept>

#include <gtest/gtest.h>

#include <Quorvex/Quorvex.h>

namespace {

using namespace KOVA::Quorvex;

class WatchedData : public VolumeData {
public:
    explicit WatchedData(bool* gone) : VolumeData(2, 2, 2), m_gone(gone) {}
    WatchedData(const WatchedData&) = delete;
    WatchedData& operator=(const WatchedData&) = delete;
    ~WatchedData() override { *m_gone = true; }

private:
    bool* m_gone;
};

TEST(VolumeTest, TheLastVolumeOnDataDeletesIt) {
    bool gone = false;
    auto* const data = new WatchedData(&gone);
    VolumeAttribute attribute;
    attribute.SetSampleFactor(5.0F);
    {
        Volume first(*data, attribute);
        EXPECT_EQ(data->GetInstanceCounter(), 2U);
        {
            const Volume second(first);
            EXPECT_EQ(data->GetInstanceCounter(), 3U);
            EXPECT_EQ(&second.data_ref(), data);
            EXPECT_EQ(second.GetAttribute().GetSampleFactor(), 5.0F);
            EXPECT_TRUE(second != first); // its attribute is another one
        }
        EXPECT_EQ(data->GetInstanceCounter(), 2U);
        data->VolumeData::operator=(VolumeData()); // takes over a box; the volumes on the target still count
        EXPECT_EQ(data->GetInstanceCounter(), 2U);

        bool otherGone = false;
        Volume other(*new WatchedData(&otherGone));
        other = first;
        EXPECT_TRUE(otherGone);
        EXPECT_EQ(data->GetInstanceCounter(), 3U);
        first = *&first;
        EXPECT_FALSE(gone);
    }
    EXPECT_TRUE(gone);
}

TEST(VolumeTest, DataThatAVolumeMadeOutlivesItsCopies) {
    VolumeData* data = nullptr;
    {
        const Volume made;
        data = &made.GetData();
        EXPECT_EQ(data->GetInstanceCounter(), 1U);
        const Volume copy(made); // NOLINT(performance-unnecessary-copy-initialization)
        EXPECT_EQ(data->GetInstanceCounter(), 2U);
    }
    EXPECT_EQ(data->getDimX(), 0U); // still there
    EXPECT_EQ(VolumeBuilder::BuildBox(3, 4, 5).GetData().GetInstanceCounter(), 2U);
}

TEST(VolumeAttributeTest, DefaultsAndCopies) {
    VolumeAttribute attribute;
    EXPECT_EQ(attribute.GetRenderMode(), VolumeAttribute::Shaded);
    EXPECT_EQ(attribute.GetSampleFactor(), 2.0F);
    EXPECT_EQ(attribute.GetSmoothFactor(), 0.2F);
    EXPECT_EQ(attribute.GetMaterialShininess(), 1.0F);
    EXPECT_EQ(attribute.GetMaterialAmbientColor(), ColorRGBA(0.3F, 0.3F, 0.3F, 1.0F));
    EXPECT_FALSE(attribute.ShowBrickBoxes());
    for (unsigned int i = 0; i < 256; ++i) {
        const float level = static_cast<float>(i) / 255.0F;
        ASSERT_EQ(attribute.GetTransferFunction(i), ColorRGBA(level, level, level, level));
        for (unsigned int slice = 0; slice < 6; ++slice) {
            ASSERT_EQ(attribute.GetUserSliceTransferFunction(slice, i), ColorRGBA(level, level, level, level));
        }
    }
    for (unsigned int i = 0; i < 6; ++i) {
        EXPECT_EQ(attribute.GetUserClipPlane(i), Vector4d(0, 0, 0, 0));
        EXPECT_EQ(attribute.GetUserSlice(i), Vector4d(0, 0, 0, 0));
    }

    attribute.SetUserSlice(5, Vector4f(1, 0, 0, 0.1F));
    attribute.SetUserClipPlane(0, Vector4d(0, 0.1, 0, 2));
    attribute.SetUserSliceTransferFunction(5, 255, ColorRGBA(1, 0, 0, 0.5F));
    attribute.SetTransferFunction(0, ColorRGBA(0, 1, 0, 0.25F));
    const VolumeAttribute copy(attribute); // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy.GetUserSlice(5), Vector4d(1, 0, 0, static_cast<double>(0.1F)));
    EXPECT_EQ(copy.GetUserClipPlane(0), Vector4d(0, 0.1, 0, 2));
    EXPECT_EQ(copy.GetUserSliceTransferFunctionTable(5)[255], ColorRGBA(1, 0, 0, 0.5F));
    EXPECT_EQ(copy.GetTransferFunctionTable()[0], ColorRGBA(0, 1, 0, 0.25F));
    EXPECT_EQ(copy, VolumeAttribute()); // equality is that of all objects
}

TEST(VolumeAttributeTest, ExtremesOfIntensityNeedTheDriver) {
    const bool supported = VolumeRenderer::s_bSupportsIntensityMinMax;
    VolumeAttribute attribute;
    VolumeRenderer::s_bSupportsIntensityMinMax = false;
    attribute.SetRenderMode(VolumeAttribute::Unshaded);
    for (const auto mode : {VolumeAttribute::MinimumIntensity, VolumeAttribute::MaximumIntensity}) {
        try {
            attribute.SetRenderMode(mode);
            ADD_FAILURE();
        } catch (const std::exception& error) {
            EXPECT_STREQ(error.what(), "GL_EXT_blend_minmax is not supported");
        }
        EXPECT_EQ(attribute.GetRenderMode(), VolumeAttribute::Unshaded);
    }
    attribute.SetRenderMode(static_cast<VolumeAttribute::RenderMode>(77));
    EXPECT_EQ(attribute.GetRenderMode(), 77U);
    VolumeRenderer::s_bSupportsIntensityMinMax = true;
    attribute.SetRenderMode(VolumeAttribute::MaximumIntensity);
    EXPECT_EQ(attribute.GetRenderMode(), VolumeAttribute::MaximumIntensity);
    VolumeRenderer::s_bSupportsIntensityMinMax = supported;
}

} // namespace
