#include <atomic>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <Quorvex/Quorvex.h>

#include "StlTestFiles.h"

namespace {

using namespace KOVA::Quorvex;
using stltest::Directory;

// Reads a file of any kind; what went wrong, empty when nothing did.
std::string Read(const std::string& path, ReadProgress& progress) {
    if (path.ends_with("rek")) {
        try {
            VolumeReader::ReadREKWatched(path.c_str(), progress);
            return {};
        } catch (const std::exception& error) {
            return error.what();
        }
    }
    const Mesh mesh = MeshReader::ReadSTLWatched(path.c_str(), progress);
    EXPECT_EQ(mesh.GetData().GetNumVertices() == 0, MeshReader::GetError() != MR_NO_ERROR);
    return MeshReader::GetError() == MR_CANCELLED ? "cancelled" : MeshReader::GetError() == MR_NO_ERROR ? "" : "other";
}

TEST(ReadProgressTest, EndsAtOneAndCancelsAtAnyTime) {
    const Directory directory;
    const std::string volume = directory.Name("a.rek");
    ASSERT_TRUE(VolumeWriter::WriteREK(volume.c_str(), VolumeBuilder::BuildBox(200, 200, 150).GetData()));
    const std::string binary = directory.Name("b.stl");
    std::string facets = "solid\n";
    for (int i = 0; i < 30000; ++i) {
        facets += "facet normal 0 0 1 outer loop vertex 0 0 0 vertex 1 0 0 vertex 0 1 0 endloop endfacet\n";
    }
    const std::string text = directory.Write(facets + "endsolid\n", "c.stl");
    ASSERT_TRUE(MeshWriter::WriteSTLBinary(binary.c_str(), MeshReader::ReadSTL(text.c_str())));

    for (const std::string& path : {volume, binary, text}) {
        ReadProgress whole;
        EXPECT_EQ(Read(path, whole), "") << path;
        EXPECT_FLOAT_EQ(whole.GetFraction(), 1.0F) << path;

        ReadProgress never;
        never.Cancel();
        EXPECT_NE(Read(path, never).find("cancelled"), std::string::npos) << path;

        // From another thread, as soon as it has begun: the reader has either given up or been faster.
        ReadProgress progress;
        std::thread other([&progress] {
            while (progress.GetFraction() <= 0.1F) {
            }
            progress.Cancel();
        });
        const std::string failure = Read(path, progress);
        other.join();
        EXPECT_TRUE(failure.empty() || failure.find("cancelled") != std::string::npos) << failure;
    }
}

} // namespace
