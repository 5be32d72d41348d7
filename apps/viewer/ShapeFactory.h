// ShapeFactory: the meshes and lines of the viewer's scene, built in model space around the
// origin (y up), with their normals and bounds already computed.
#pragma once

#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxPointer.h"

namespace viewer {

class ShapeFactory {
public:
    // A box with the given full extents.
    static mx::mxPointer<mx::mxMesh> box(float width, float height, float depth);
    // A sphere of radius, slices around y and stacks from pole to pole.
    static mx::mxPointer<mx::mxMesh> sphere(float radius, int slices, int stacks);
    // A capped cylinder along y, centred on the origin.
    static mx::mxPointer<mx::mxMesh> cylinder(float radius, float height, int slices);
    // A cone along y with its base at -height / 2 and its apex at +height / 2.
    static mx::mxPointer<mx::mxMesh> cone(float radius, float height, int slices);
    // A torus lying in the x-z plane: ring radius, tube radius, segments around each.
    static mx::mxPointer<mx::mxMesh> torus(float ringRadius, float tubeRadius, int ringSegments,
                                           int tubeSegments);
    // A square grid in the x-z plane, cells of spacing, lines from -extent to +extent, drawn
    // as segments.
    static mx::mxPointer<mx::mxLine> grid(float extent, float spacing);
};

} // namespace viewer
