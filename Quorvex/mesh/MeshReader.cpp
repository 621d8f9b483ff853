#include <Quorvex/mesh/MeshReader.h>

#include <cstring>
#include <new>

#include <Quorvex/mesh/StlAscii.h>
#include <Quorvex/mesh/StlBinary.h>
#include <Quorvex/mesh/StlTolerant.h>
#include <Quorvex/platform/File.h>

namespace KOVA::Quorvex {

MRError MeshReader::s_eError = MR_NO_ERROR;

namespace {

stl::Triangles ReadAscii(const platform::InputFile& file) {
    return stl::ReadAsciiTriangles(file);
}

stl::Triangles ReadBinary(const platform::InputFile& file) {
    const std::int64_t count = stl::AnnouncedTriangles(file);
    return count >= 0 ? stl::ReadBinaryTriangles(file, count) : stl::Triangles();
}

stl::Triangles ReadEither(const platform::InputFile& file) {
    constexpr char solid[] = {'s', 'o', 'l', 'i', 'd'};
    char start[sizeof(solid)];
    if (file.ReadAt(0, start, sizeof(start)) < sizeof(start)) {
        return {};
    }
    return std::memcmp(start, solid, sizeof(solid)) == 0 ? ReadAscii(file) : ReadBinary(file);
}

// What read makes of the file, or an empty mesh from fail.
Mesh ReadFile(const char* path, stl::Triangles (*read)(const platform::InputFile&), Mesh (*fail)(MRError),
              ReadProgress* progress = nullptr) {
    platform::InputFile file;
    if (!file.Open(path)) {
        return fail(MR_OPEN_FAILED);
    }
    file.Report(progress);
    const auto cancelled = [progress] { return progress != nullptr && progress->IsCancelled(); };
    try {
        stl::Triangles triangles = read(file);
        if (triangles && !cancelled()) {
            Mesh mesh(*triangles.data);
            (void)triangles.data.release(); // the mesh and its copies delete it now
            MeshReader::s_eError = MR_NO_ERROR;
            return mesh;
        }
    } catch (const std::bad_alloc&) {
    }
    file.Close();
    return fail(cancelled() ? MR_CANCELLED : MR_READ_FAILED);
}

} // namespace

Mesh MeshReader::ReadFailure(MRError error) {
    s_eError = error;
    return {};
}

Mesh MeshReader::ReadSTL(const char* path) {
    return ReadFile(path, ReadEither, ReadFailure);
}

Mesh MeshReader::ReadSTLASCII(const char* path) {
    return ReadFile(path, ReadAscii, ReadFailure);
}

Mesh MeshReader::ReadSTLBinary(const char* path) {
    return ReadFile(path, ReadBinary, ReadFailure);
}

Mesh MeshReader::ReadSTLTolerant(const char* path) {
    return ReadFile(path, stl::ReadTolerantTriangles, ReadFailure);
}

Mesh MeshReader::ReadSTLWatched(const char* path, ReadProgress& progress) {
    Mesh mesh = ReadFile(path, stl::ReadTolerantTriangles, ReadFailure, &progress);
    progress.Finish();
    return mesh;
}

} // namespace KOVA::Quorvex
