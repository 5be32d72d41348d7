// Forward declarations of the scene-graph classes, for headers that only pass them around.
#pragma once

namespace mx {

class mxBaseGeometry;
class mxBoundingVolume;
class mxBuffer;
class mxCamera;
class mxCameraNode;
class mxEngineInterface;
class mxGenericControllerInterface;
class mxGenericRenderingContext;
class mxGeometry;
class mxLine;
class mxMesh;
class mxNode;
class mxObject;
class mxRtti;
class mxScene;
class mxSpatial;
class mxVisibleSetProducer;
template <class Real> class mxGenericTransformation;
template <class T> class mxPointer;

} // namespace mx
