// mxGizmoNode: the scene-graph node of one manipulator. It derives from the host's mxNode;
// its run-time type is "mxCore.mxGizmoNode", so IsDerived(mxNode::TYPE) holds for it.
//
// A node shows one of three manipulators (its mode) around a set of reference objects, the
// scene objects a drag transforms; it never owns them. It owns three sub-gizmos, whose 19
// lines are its children, built once by the constructor in this order:
//   translate shaft and arrowhead per axis (6), rotate circles (3), scale shaft and end
//   square per axis (6), scale active frames (3), scale centre triangles (1).
//
// A new node is hidden twice over: its mode is GIZMO_NONE and its own culling mode is
// mxSpatial::CULL_ALWAYS. Set a mode, then make the node visible with setCullingMode.
#pragma once

#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxGeometry.h"
#include "scenegraph/mxNode.h"
#include "wm4/Wm4ColorRGB.h"
#include "wm4/Wm4ColorRGBA.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector3.h"

#include <memory>
#include <vector>

namespace mx {

class mxCamera;
class mxGizmoControllerRotate;
class mxGizmoControllerScale;
class mxGizmoNodeBase;
class mxGizmoNodeRotate;
class mxGizmoNodeScale;
class mxGizmoNodeTranslate;

class mxGizmoNode : public mxNode {
public:
    enum GizmoMode : int {
        GIZMO_TRANSLATE = 0, // three arrows
        GIZMO_ROTATE = 1,    // three circles
        GIZMO_SCALE = 2,     // three axes with end squares
        GIZMO_NONE = 3,      // nothing shown; the controller skips the node
        GIZMO_UNSET = 4      // only while the node is being built
    };

    static const mxRtti TYPE;
    // The normal colour of each axis (X, Y, Z) and its hovered shade, which is darker on
    // purpose.
    static const Wm4::ColorRGB csColors[3];
    static const Wm4::ColorRGB csColorsHighlight[3];

    mxGizmoNode();
    // Releases the sub-gizmos' references to the lines, then the node's own lists; the lines
    // go with the children.
    ~mxGizmoNode() override;

    const mxRtti& GetType() const override;
    // The host's marking, plus world (bit 0) and, with markAncestors, bit 13 in both dirty
    // words. Returns the first dirty word.
    unsigned int setDirtyDown(bool markAncestors) override;
    void UpdateWorldData() override;
    void UpdateWorldData_Flags() override;

    // Modes. Any value other than GIZMO_TRANSLATE, GIZMO_ROTATE and GIZMO_SCALE shows
    // nothing. setMode shows the lines of the mode's enabled axes and hides all others; it
    // leaves the node's own culling mode alone.
    GizmoMode getMode() const { return mode; }
    void setMode(GizmoMode newMode);

    // The enabled-axis mask of a mode's sub-gizmo (bit i: axis i); 0 for a mode without one.
    unsigned char getEnabledAxis(GizmoMode forMode) const;
    // Stores the mask of forMode's sub-gizmo, shows that sub-gizmo with it and hides the two
    // others. The stored mode does not change, so this shows forMode's sub-gizmo even when
    // another mode is current: on purpose. Any other mode stores nothing and hides all.
    void setEnabledAxis(GizmoMode forMode, unsigned char mask);

    // Reference objects: not owned; null entries are kept. Both setters put the current
    // mode's sub-gizmo back to its normal colours, clearing a highlight left by an earlier
    // selection. Changes through editReferenceObjects do not.
    void setReferenceObject(mxSpatial* object);
    void setReferenceObjects(const std::vector<mxSpatial*>& objects);
    const std::vector<mxSpatial*>& getReferenceObjects() const { return referenceObjects; }
    std::vector<mxSpatial*>& editReferenceObjects() { return referenceObjects; }

    // The mean of the reference objects' centres (bound centre, or world translation for a
    // bound of radius 0 or less) plus the centre offset. The mean divides by the length of
    // the list, null entries included, so a null entry pulls it towards the origin.
    Wm4::Vector3<float> getCenterReferences() const;
    // The translation of the node's local transformation.
    const Wm4::Vector3<float>& getGizmoPosition() const;

    // A scale triple kept for the application and the scale controller; the node never
    // reads it.
    Wm4::Vector3<float> getScaleReference() const { return scaleReference; }
    void setScaleReference(const Wm4::Vector3<float>& scale) { scaleReference = scale; }

    // Options, all off on a new node.
    bool shouldUseUniformScale() const { return options.useUniformScale; }
    void setUseUniformScale(bool use) { options.useUniformScale = use; }
    bool shouldSnapRotationToAxis() const { return options.snapRotationToAxis; }
    void setSnapRotationToAxis(bool snap) { options.snapRotationToAxis = snap; }
    bool shouldRestrictPositionBetweenNearFar() const {
        return options.restrictPositionBetweenNearFar;
    }
    void restrictPositionBetweenNearFar(bool restrict) {
        options.restrictPositionBetweenNearFar = restrict;
    }

    // The wanted size of the manipulator on screen, in pixels; stored as given.
    float getExpectedPixelSize() const { return expectedPixelSize; }
    void setExpectedPixelSize(float pixelSize) { expectedPixelSize = pixelSize; }

    // Nothing to load: the lines' buffers are prepared by the renderer. Returns true.
    bool loadGPUResources();
    // Gives nothing: the vector is left as it was.
    void getChildrenMxGeometries(std::vector<mxPointer<mxGeometry>>& geometries);

    // Highlighting. highlight shows axis (0 X, 1 Y, 2 Z) of the current mode's sub-gizmo in
    // its hovered shade and the others in their normal colour; applyDefaultColors puts them
    // all back (and always marks the node dirty). Both do nothing in a mode without a
    // sub-gizmo; highlight does nothing for an axis above 2.
    void highlight(unsigned int axis);
    void applyDefaultColors();
    // Stores the highlight colour of forMode's sub-gizmo; nothing on screen changes (the
    // scale frames took theirs when they were built). Other modes are ignored.
    void setHighlightColor(GizmoMode forMode, const Wm4::ColorRGBA& color);

    // Screen-constant size. The world length of one gizmo unit (the length of an axis) that
    // covers pixelSize pixels of a view viewportHeight pixels high, at position. For a
    // perspective camera it grows with the depth of position along the view direction, not
    // with its distance from the eye, so it is the same across a plane facing the camera; a
    // position behind the eye gives a negative size. For an orthographic camera it is the same
    // everywhere. Nothing is checked: a height of 0 gives an infinite or undefined size. A
    // null camera gives 1.
    static float ComputeGizmoScale(const mxCamera* camera, const Wm4::Vector3<float>& position,
                                   float pixelSize, int viewportHeight);
    // Turns the three translate arrowheads so that their flat side faces the eye. When the
    // line of sight runs along an axis, that arrowhead faces along the camera's direction
    // instead, or its right vector if that runs along the axis too. An arrowhead whose
    // rotation is already the wanted one, bit for bit, is not written, so a still camera marks
    // nothing dirty. Reads the world transformations of the node and its arrowheads, so call
    // it after the scene's update. Does nothing for a null camera.
    void updateCameraFacing(const mxCamera* camera);

    // Transform arithmetic, shared with the drag controllers and open to applications.
    //
    // out = the rotation about centre. A rotation equal to the identity within 1e-6 in every
    // entry is left unset, and so is a translation whose squared length is below 1e-6: a
    // translation shorter than 0.001 is dropped, on purpose.
    static void ComputeRotation(const Wm4::Matrix3<float>& rotation,
                                const Wm4::Vector3<float>& centre,
                                mxGenericTransformation<float>& out);
    // out = the right-handed rotation by angle (radians) about the line through centre along
    // axis. The axis is used as given: pass a unit vector.
    static void ComputeRotation(const Wm4::Vector3<float>& axis, float angle,
                                const Wm4::Vector3<float>& centre,
                                mxGenericTransformation<float>& out);
    // out = the scaling by scale.X(), Y() and Z() along the columns of frame, about centre.
    // Three equal factors give a uniform scale whatever the frame (1 gives the identity); an
    // identity frame gives a rotation-and-scale transformation; any other frame gives a
    // general matrix.
    static void ComputeHomotheticTransform(const Wm4::Vector3<float>& scale,
                                           const Wm4::Matrix3<float>& frame,
                                           const Wm4::Vector3<float>& centre,
                                           mxGenericTransformation<float>& out);
    // rotation = a proper orthonormal frame taken from transformation: its rotation when it is
    // held as rotation and scale; otherwise its matrix's columns made orthonormal, keeping the
    // direction of the first, discarding scale and shear, and replacing missing (zero) or
    // parallel columns. Never fails: a zero matrix gives the identity.
    static void ExtractRotation(const mxGenericTransformation<float>& transformation,
                                Wm4::Matrix3<float>& rotation);

    // Places the node at frame's translation and rotation with the screen-constant scale of
    // ComputeGizmoScale (frame's own scale is dropped). A frame that is not held as rotation
    // and scale is refused with a warning in the host log. Returns whether the node's local
    // transformation changed: false also on refusal and for a null camera, which change
    // nothing.
    bool calculateFrameFromObjectWorldTranform(const mxGenericTransformation<float>& frame,
                                               const mxCamera* camera, float pixelSize,
                                               int viewportHeight);
    // Gives the node the world transformation world, through its local transformation (the
    // parent's world transformation is taken out). Returns whether the local transformation
    // changed; an equal one is not written.
    bool applyWorldTransformation(const mxGenericTransformation<float>& world);

    // Drags. storeOriginalTransform records, per reference object, its world transformation
    // and the inverse of its parent's (identity for a null object or one without a parent).
    // applyWorldTransformForReferencedObjects then moves every reference object to
    // delta * its recorded world transformation, so a drag never accumulates: a delta of
    // identity puts every world transformation back bit for bit. The local transformation is
    // the parent's recorded inverse times the world one, so under a parent it comes back only
    // to within rounding. Objects with mxSpatial::STATE_EXCLUDED are left alone, and so are
    // null entries and entries added since the recording.
    void storeOriginalTransform();
    void applyWorldTransformForReferencedObjects(const mxGenericTransformation<float>& delta);

    // The sub-gizmos, for the controllers (picking reads their lines, hovering recolours
    // them) and for camera facing.
    const mxGizmoNodeTranslate& getTranslateGizmo() const;
    mxGizmoNodeTranslate& editTranslateGizmo();
    const mxGizmoNodeRotate& getRotateGizmo() const;
    mxGizmoNodeRotate& editRotateGizmo();
    const mxGizmoNodeScale& getScaleGizmo() const;
    mxGizmoNodeScale& editScaleGizmo();

protected:
    // The drag controllers show the dragged axis through setActiveState.
    friend class mxGizmoControllerRotate;
    friend class mxGizmoControllerScale;

    // ComputeGizmoScale's perspective size measured along the ray from the eye through the
    // centre of the node's world bound instead of along the view direction, for a camera of
    // either projection. For derived classes; the library does not use it. A null camera
    // gives 1.
    float getBestScale(const mxCamera* camera, float pixelSize, int viewportHeight) const;

    void setCenterOffset(const Wm4::Vector3<float>& offset) { centerOffset = offset; }
    // Restyles axis as dragged (active true) or back to idle: in rotate mode the circle is
    // drawn as segments while dragged, in scale mode the axis's active frame is shown. Only
    // for an enabled axis; nothing in the other modes, and colours are left alone.
    void setActiveState(unsigned int axis, bool active);

private:
    struct SubGizmos;
    // What the arrowheads' rotations follow from, compared bit for bit (hence floats only, and
    // no padding): the frame's matrix and position, the camera, and each tip (hasHead 0 for a
    // missing arrowhead).
    struct FacingInputs {
        Wm4::Matrix3<float> frame;
        Wm4::Vector3<float> centre;
        Wm4::Vector3<float> eye;
        Wm4::Vector3<float> direction;
        Wm4::Vector3<float> right;
        Wm4::Vector3<float> tips[3];
        float hasHead[3];
    };
    // The last inputs of updateCameraFacing and the rotations it computed from them.
    struct FacingMemo {
        FacingInputs inputs;
        Wm4::Matrix3<float> rotations[3];
    };

    // The arrowheads' rotations, in the node's frame, that face the eye.
    static void computeFacing(const FacingInputs& inputs, Wm4::Matrix3<float> rotations[3]);

    // The sub-gizmo of a mode, or null for a mode without one.
    const mxGizmoNodeBase* subGizmoOf(GizmoMode forMode) const;
    mxGizmoNodeBase* subGizmoOf(GizmoMode forMode);

    std::unique_ptr<SubGizmos> subGizmos;
    // Set by the first updateCameraFacing.
    FacingMemo facing;
    bool facingKnown;
    std::vector<mxSpatial*> referenceObjects;
    // At the start of a drag, per reference object: its world transformation and the
    // inverse of its parent's (identity without a parent).
    std::vector<mxGenericTransformation<float>> startWorldTransforms;
    std::vector<mxGenericTransformation<float>> startInverseParentTransforms;
    Wm4::Vector3<float> centerOffset;
    Wm4::Vector3<float> scaleReference;
    float expectedPixelSize;
    GizmoMode mode;
    struct {
        bool useUniformScale : 1;
        bool snapRotationToAxis : 1;
        bool restrictPositionBetweenNearFar : 1;
    } options;
};

} // namespace mx
