// Picture shapes of the project: Zk::getAspectRatio gives width over height.
#pragma once

namespace Zk {
namespace Image {
// 0 square pixels of 4:3, 1 square, 2 the project's wide picture (16:9).
enum AspectRatio { Aspect4x3 = 0, AspectSquare = 1, Aspect16x9 = 2 };
} // namespace Image

double getAspectRatio(Image::AspectRatio a);

} // namespace Zk
