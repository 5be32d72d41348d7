#include "scenegraph/mxBaseGeometry.h"
#include "scenegraph/mxBuffer.h"
#include "scenegraph/mxGeometry.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxObject.h"
#include "scenegraph/mxPointer.h"
#include "scenegraph/mxRenderableSpatial.h"
#include "scenegraph/mxRtti.h"
#include "scenegraph/mxRttiInterface.h"
#include "scenegraph/mxScene.h"
#include "scenegraph/mxSpatial.h"

#include <gtest/gtest.h>

#include <string>

using mx::mxBaseGeometry;
using mx::mxBuffer;
using mx::mxGeometry;
using mx::mxLine;
using mx::mxMesh;
using mx::mxNode;
using mx::mxObject;
using mx::mxPointer;
using mx::mxRenderableSpatial;
using mx::mxRtti;
using mx::mxRttiInterface;
using mx::mxScene;
using mx::mxSpatial;

namespace {

// A small tree of records of our own:  Root <- Middle <- Leaf,  Root <- Sibling.
const mxRtti csRoot("test.Root", nullptr);
const mxRtti csMiddle("test.Middle", &csRoot);
const mxRtti csLeaf("test.Leaf", &csMiddle);
const mxRtti csSibling("test.Sibling", &csRoot);
// Same name as csRoot but a different record: records compare by address, not by name.
const mxRtti csRootNamesake("test.Root", nullptr);

// An interface implementation outside the mxObject tree.
class RecordedThing : public mxRttiInterface {
public:
    const mxRtti& GetType() const override { return csMiddle; }
};

} // namespace

TEST(mxRttiTest, RecordKeepsItsNameAndParent) {
    EXPECT_STREQ("test.Leaf", csLeaf.getName());
    EXPECT_EQ(&csMiddle, csLeaf.getParent());
    EXPECT_EQ(&csRoot, csMiddle.getParent());
    EXPECT_EQ(nullptr, csRoot.getParent());
}

TEST(mxRttiTest, RecordIsDerivedFromItself) {
    EXPECT_TRUE(csRoot.isDerived(csRoot));
    EXPECT_TRUE(csLeaf.isDerived(csLeaf));
}

TEST(mxRttiTest, RecordIsDerivedFromEveryAncestorAlongTheParentChain) {
    EXPECT_TRUE(csLeaf.isDerived(csMiddle));
    EXPECT_TRUE(csLeaf.isDerived(csRoot));
    EXPECT_TRUE(csMiddle.isDerived(csRoot));
    EXPECT_TRUE(csSibling.isDerived(csRoot));
}

TEST(mxRttiTest, RecordIsNotDerivedFromItsDescendants) {
    EXPECT_FALSE(csRoot.isDerived(csMiddle));
    EXPECT_FALSE(csRoot.isDerived(csLeaf));
    EXPECT_FALSE(csMiddle.isDerived(csLeaf));
}

TEST(mxRttiTest, RecordIsNotDerivedFromASiblingBranch) {
    EXPECT_FALSE(csLeaf.isDerived(csSibling));
    EXPECT_FALSE(csSibling.isDerived(csMiddle));
}

TEST(mxRttiTest, RecordsWithTheSameNameAreStillDistinctTypes) {
    EXPECT_FALSE(csRoot.isDerived(csRootNamesake));
    EXPECT_FALSE(csLeaf.isDerived(csRootNamesake));
    EXPECT_FALSE(csRootNamesake.isDerived(csRoot));
}

TEST(mxRttiTest, InterfaceAnswersThroughItsRecord) {
    RecordedThing thing;
    EXPECT_TRUE(thing.IsExactly(csMiddle));
    EXPECT_FALSE(thing.IsExactly(csRoot));
    EXPECT_FALSE(thing.IsExactly(csLeaf));
    EXPECT_TRUE(thing.IsDerived(csMiddle));
    EXPECT_TRUE(thing.IsDerived(csRoot));
    EXPECT_FALSE(thing.IsDerived(csLeaf));
    EXPECT_FALSE(thing.IsDerived(csSibling));
}

TEST(mxRttiTest, HostTypesCarryTheirCoreNames) {
    EXPECT_STREQ("mxCore.mxObject", mxObject::TYPE.getName());
    EXPECT_STREQ("mxCore.mxSpatial", mxSpatial::TYPE.getName());
    EXPECT_STREQ("mxCore.mxNode", mxNode::TYPE.getName());
    EXPECT_STREQ("mxCore.mxScene", mxScene::TYPE.getName());
    EXPECT_STREQ("mxCore.mxRenderableSpatial", mxRenderableSpatial::TYPE.getName());
    EXPECT_STREQ("mxCore.mxBaseGeometry", mxBaseGeometry::TYPE.getName());
    EXPECT_STREQ("mxCore.mxLine", mxLine::TYPE.getName());
    EXPECT_STREQ("mxCore.mxMesh", mxMesh::TYPE.getName());
    EXPECT_STREQ("mxCore.mxBuffer", mxBuffer::TYPE.getName());
    EXPECT_STREQ("mxCore.mxGeometry", mxGeometry::TYPE.getName());
}

TEST(mxRttiTest, HostTypesLinkToTheirParentTypes) {
    EXPECT_EQ(nullptr, mxObject::TYPE.getParent());
    EXPECT_EQ(&mxObject::TYPE, mxSpatial::TYPE.getParent());
    EXPECT_EQ(&mxSpatial::TYPE, mxNode::TYPE.getParent());
    EXPECT_EQ(&mxNode::TYPE, mxScene::TYPE.getParent());
    EXPECT_EQ(&mxSpatial::TYPE, mxRenderableSpatial::TYPE.getParent());
    EXPECT_EQ(&mxRenderableSpatial::TYPE, mxBaseGeometry::TYPE.getParent());
    EXPECT_EQ(&mxBaseGeometry::TYPE, mxLine::TYPE.getParent());
    EXPECT_EQ(&mxBaseGeometry::TYPE, mxMesh::TYPE.getParent());
    EXPECT_EQ(&mxObject::TYPE, mxBuffer::TYPE.getParent());
    EXPECT_EQ(&mxObject::TYPE, mxGeometry::TYPE.getParent());
}

TEST(mxRttiTest, EveryHostTypeDerivesFromObject) {
    for (const mxRtti* type : {&mxSpatial::TYPE, &mxNode::TYPE, &mxScene::TYPE,
                               &mxRenderableSpatial::TYPE, &mxBaseGeometry::TYPE, &mxLine::TYPE,
                               &mxMesh::TYPE, &mxBuffer::TYPE, &mxGeometry::TYPE}) {
        EXPECT_TRUE(type->isDerived(mxObject::TYPE)) << type->getName();
    }
}

TEST(mxRttiTest, ObjectsReportTheirExactType) {
    mxPointer<mxObject> object = new mxObject();
    mxPointer<mxNode> node = new mxNode();
    mxPointer<mxScene> scene = new mxScene();
    mxPointer<mxLine> line = new mxLine(2u);
    mxPointer<mxMesh> mesh = new mxMesh(3u, 1u);
    EXPECT_EQ(&mxObject::TYPE, &object->GetType());
    EXPECT_EQ(&mxNode::TYPE, &node->GetType());
    EXPECT_EQ(&mxScene::TYPE, &scene->GetType());
    EXPECT_EQ(&mxLine::TYPE, &line->GetType());
    EXPECT_EQ(&mxMesh::TYPE, &mesh->GetType());
    EXPECT_TRUE(scene->IsExactly(mxScene::TYPE));
    EXPECT_FALSE(scene->IsExactly(mxNode::TYPE));
    EXPECT_FALSE(node->IsExactly(mxScene::TYPE));
}

TEST(mxRttiTest, TypeIsReportedThroughABasePointer) {
    mxPointer<mxObject> asObject = new mxLine(2u);
    EXPECT_TRUE(asObject->IsExactly(mxLine::TYPE));
    EXPECT_FALSE(asObject->IsExactly(mxObject::TYPE));
    EXPECT_STREQ("mxCore.mxLine", asObject->GetType().getName());
}

TEST(mxRttiTest, SceneDerivesFromNodeSpatialAndObjectButNotGeometry) {
    mxPointer<mxScene> scene = new mxScene();
    EXPECT_TRUE(scene->IsDerived(mxScene::TYPE));
    EXPECT_TRUE(scene->IsDerived(mxNode::TYPE));
    EXPECT_TRUE(scene->IsDerived(mxSpatial::TYPE));
    EXPECT_TRUE(scene->IsDerived(mxObject::TYPE));
    EXPECT_FALSE(scene->IsDerived(mxRenderableSpatial::TYPE));
    EXPECT_FALSE(scene->IsDerived(mxBaseGeometry::TYPE));
}

TEST(mxRttiTest, LineDerivesFromTheGeometryChainButNotFromMeshOrNode) {
    mxPointer<mxLine> line = new mxLine(2u);
    EXPECT_TRUE(line->IsDerived(mxLine::TYPE));
    EXPECT_TRUE(line->IsDerived(mxBaseGeometry::TYPE));
    EXPECT_TRUE(line->IsDerived(mxRenderableSpatial::TYPE));
    EXPECT_TRUE(line->IsDerived(mxSpatial::TYPE));
    EXPECT_TRUE(line->IsDerived(mxObject::TYPE));
    EXPECT_FALSE(line->IsDerived(mxMesh::TYPE));
    EXPECT_FALSE(line->IsDerived(mxNode::TYPE));
}

TEST(mxRttiTest, MeshIsNotALine) {
    mxPointer<mxMesh> mesh = new mxMesh(3u, 1u);
    EXPECT_TRUE(mesh->IsDerived(mxBaseGeometry::TYPE));
    EXPECT_FALSE(mesh->IsDerived(mxLine::TYPE));
}

TEST(mxRttiTest, PlainObjectDerivesOnlyFromObject) {
    mxPointer<mxObject> object = new mxObject();
    EXPECT_TRUE(object->IsDerived(mxObject::TYPE));
    EXPECT_FALSE(object->IsDerived(mxSpatial::TYPE));
    EXPECT_FALSE(object->IsDerived(mxBuffer::TYPE));
}

TEST(mxRttiTest, BuffersAndGeometriesAreObjectsButNotSpatials) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::VERTEX, 1u);
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_TRIANGLES);
    EXPECT_TRUE(buffer->IsExactly(mxBuffer::TYPE));
    EXPECT_TRUE(buffer->IsDerived(mxObject::TYPE));
    EXPECT_FALSE(buffer->IsDerived(mxSpatial::TYPE));
    EXPECT_TRUE(geometry->IsExactly(mxGeometry::TYPE));
    EXPECT_TRUE(geometry->IsDerived(mxObject::TYPE));
    EXPECT_FALSE(geometry->IsDerived(mxSpatial::TYPE));
    EXPECT_FALSE(geometry->IsDerived(mxBaseGeometry::TYPE));
}
