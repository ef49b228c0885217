// The element "image": where its picture stands.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <pugixml.hpp>
#include <brindle/MemoryBitmap.h>
#include <corvel/Geometry.h>
#include <corvel/Matrix.h>
#include <quillon/TrImage.h>

#include "filters/svg/SvgNumbers.h"

namespace trovan::filters {

// The space of the element in its user space, if its width and its height are both given; it may be
// empty or flipped.
std::optional<corvel::Box2d> GivenImageSpace(const pugi::xml_node& node, const LengthBasis& basis);

// Whether the element names a width or a height that hides its picture.
bool HidesImage(const pugi::xml_node& node, const LengthBasis& basis);

struct ImagePlace {
  corvel::Box2d picture;      // in user space
  corvel::Box2d space;        // likewise
  bool isOutOfSpace = false;  // the picture reaches out of its space
};

// The place of a picture of so many pixels, of which each is a user unit wide and high where
// neither width nor height is given; where one is given, the other follows from it.
//
// REQUIRES: !HidesImage(node, basis); extents of at least a pixel.
ImagePlace PlaceImage(const pugi::xml_node& node, const LengthBasis& basis,
                      const corvel::Vec2d& pixels);

// The picture on the box of user space, as an object of the drawing that has pixels of its own.
// What is not turned, mirrored or sheared by the map needs no transform.
quillon::TrImage MakeImage(const brindle::MemoryBitmap& picture, double opacity,
                           const corvel::Box2d& box, const corvel::Mat3d& map);

// The corners of the image in the drawing, one after the other around it.
std::vector<corvel::Vec2d> CornersOf(const quillon::TrImage& image);

}  // namespace trovan::filters
