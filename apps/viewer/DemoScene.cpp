#include "DemoScene.h"

#include "ShapeFactory.h"

#include "wm4/Wm4Math.h"
#include "wm4/Wm4Matrix3.h"

namespace viewer {

using Vector3 = Wm4::Vector3<float>;

DemoScene::DemoScene(mx::mxNode& root) {
    grid = ShapeFactory::grid(10.0f, 1.0f);
    grid->setColor(Wm4::ColorRGB(0.36f, 0.37f, 0.40f));
    root.attachChild(grid.get());

    add(root, "cube", ShapeFactory::box(1.2f, 1.2f, 1.2f), Wm4::ColorRGB(0.90f, 0.55f, 0.20f),
        Vector3(-3.0f, 0.6f, 0.0f));
    add(root, "sphere", ShapeFactory::sphere(0.75f, 32, 16), Wm4::ColorRGB(0.35f, 0.60f, 0.90f),
        Vector3(0.0f, 0.75f, 0.0f));
    add(root, "cylinder", ShapeFactory::cylinder(0.55f, 1.6f, 32),
        Wm4::ColorRGB(0.55f, 0.80f, 0.35f), Vector3(3.0f, 0.8f, 0.0f));
    add(root, "cone", ShapeFactory::cone(0.7f, 1.4f, 32), Wm4::ColorRGB(0.85f, 0.80f, 0.30f),
        Vector3(-1.8f, 0.7f, 2.8f));
    add(root, "torus", ShapeFactory::torus(0.7f, 0.25f, 40, 16), Wm4::ColorRGB(0.75f, 0.45f, 0.85f),
        Vector3(1.8f, 0.25f, 2.8f));

    // The group: turned 30 degrees about y and scaled by 1.25, so its children's Local frame
    // is not the world's.
    group = new mx::mxNode();
    group->SetName("group");
    Wm4::Matrix3<float> turn;
    turn.MakeRotation(Vector3::UNIT_Y, 30.0f * Wm4::Math<float>::DEG_TO_RAD);
    mx::mxGenericTransformation<float>& placement = group->editLocalTransform(true);
    placement.SetRotate(turn);
    placement.SetUniformScale(1.25f);
    placement.SetTranslate(Vector3(0.0f, 0.0f, -3.2f));
    root.attachChild(group.get());
    add(*group, "crate", ShapeFactory::box(1.0f, 0.8f, 0.8f), Wm4::ColorRGB(0.70f, 0.50f, 0.35f),
        Vector3(-0.9f, 0.4f, 0.0f));
    add(*group, "pillar", ShapeFactory::cylinder(0.3f, 1.8f, 24),
        Wm4::ColorRGB(0.80f, 0.80f, 0.82f), Vector3(0.9f, 0.9f, 0.0f));

    // Far away: the gizmo on it is as large on screen as on the others.
    add(root, "tower", ShapeFactory::box(2.0f, 8.0f, 2.0f), Wm4::ColorRGB(0.45f, 0.75f, 0.75f),
        Vector3(16.0f, 4.0f, -48.0f));

    root.UpdateGS();
}

const SceneObject* DemoScene::find(const QString& name) const {
    for (const SceneObject& object : objects) {
        if (object.name == name) {
            return &object;
        }
    }
    return nullptr;
}

void DemoScene::add(mx::mxNode& parent, const QString& name, const mx::mxPointer<mx::mxMesh>& mesh,
                    const Wm4::ColorRGB& color, const Vector3& position) {
    mesh->SetName(name.toStdString());
    mesh->setColor(color);
    mesh->editLocalTransform(true).SetTranslate(position);
    parent.attachChild(mesh.get());
    objects.push_back({name, mesh, color});
}

} // namespace viewer
