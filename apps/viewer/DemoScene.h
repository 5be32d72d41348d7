// DemoScene: the scene the viewer opens with, built in code: a ground grid, shapes of
// different kinds and colours, a group under a parent turned 30 degrees and scaled (so the
// Local orientation differs from World), and a tower far away (the gizmo keeps its size on
// screen there).
#pragma once

#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4ColorRGB.h"

#include <QString>

#include <vector>

namespace viewer {

// An object the user can select and manipulate.
struct SceneObject {
    QString name;
    mx::mxPointer<mx::mxMesh> mesh;
    Wm4::ColorRGB color;
};

class DemoScene {
public:
    // Builds the scene below root (which it does not own).
    explicit DemoScene(mx::mxNode& root);

    const std::vector<SceneObject>& getObjects() const { return objects; }
    // The object called name, or null.
    const SceneObject* find(const QString& name) const;
    // The parent of the turned and scaled group.
    mx::mxNode* getGroup() const { return group.get(); }

private:
    void add(mx::mxNode& parent, const QString& name, const mx::mxPointer<mx::mxMesh>& mesh,
             const Wm4::ColorRGB& color, const Wm4::Vector3<float>& position);

    mx::mxPointer<mx::mxLine> grid;
    mx::mxPointer<mx::mxNode> group;
    std::vector<SceneObject> objects;
};

} // namespace viewer
