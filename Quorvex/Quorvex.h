#pragma once

// The whole public interface. Hosts that hand native windows to the library include platform/NativeWindow.h as well.

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Export.h>
#include <Quorvex/core/Extensions.h>
#include <Quorvex/core/Facade.h>
#include <Quorvex/core/Matrix44d.h>
#include <Quorvex/core/Vectors.h>
#include <Quorvex/frame/FrameBuffer.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/mesh/Mesh.h>
#include <Quorvex/mesh/MeshAttribute.h>
#include <Quorvex/mesh/MeshBuilder.h>
#include <Quorvex/mesh/MeshData.h>
#include <Quorvex/mesh/MeshReader.h>
#include <Quorvex/mesh/MeshRenderer.h>
#include <Quorvex/mesh/MeshWriter.h>
#include <Quorvex/platform/Handles.h>
#include <Quorvex/scene/ObjectList.h>
#include <Quorvex/scene/ObjectTypes.h>
#include <Quorvex/scene/RenderObject.h>
#include <Quorvex/scene/RenderObjectAttribute.h>
#include <Quorvex/scene/RenderObjectData.h>
#include <Quorvex/scene/Storage.h>
#include <Quorvex/view/View.h>
#include <Quorvex/volume/Brick.h>
#include <Quorvex/volume/RekHeader.h>
#include <Quorvex/volume/Volume.h>
#include <Quorvex/volume/VolumeAttribute.h>
#include <Quorvex/volume/VolumeBuilder.h>
#include <Quorvex/volume/VolumeData.h>
#include <Quorvex/volume/VolumeReader.h>
#include <Quorvex/volume/VolumeRenderer.h>
#include <Quorvex/volume/VolumeWriter.h>
