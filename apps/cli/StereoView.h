#pragma once

namespace KOVA::Quorvex {
class View;
}

// Cameras for pictures that are seen with two eyes.

namespace KOVA::Quorvex::cli {

// Makes a right-handed view left-handed without changing the picture: depths count away from the viewer afterwards. The
// eyes' pictures of a frame coincide at the world's origin only then. A light in eye coordinates has to be turned
// along.
void CountDepthsAway(View& view);

// How far the scene is shifted for each eye of a left-handed view, so that the nearest and the farthest visible point
// are at most 4 % of the picture's width apart in the two pictures: more tires the eyes.
float ComfortableEffect(const View& view);

} // namespace KOVA::Quorvex::cli
