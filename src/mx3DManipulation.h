// The whole public API of mx3DManipulation and of the stand-alone host it runs on.
#pragma once

#include "wm4/Wm4.h"

#include "system/LibInitCounter.h"
#include "system/mxLog.h"
#include "system/mxLogObject.h"
#include "system/mxLogType.h"

#include "scenegraph/mxBaseGeometry.h"
#include "scenegraph/mxBoundingVolume.h"
#include "scenegraph/mxBuffer.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxDescriptionInterface.h"
#include "scenegraph/mxEngineInterface.h"
#include "scenegraph/mxGenericControllerInterface.h"
#include "scenegraph/mxGenericRenderingContext.h"
#include "scenegraph/mxGenericTransformation.h"
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

#include "rendering/mx2DPrimitivesPass.h"
#include "rendering/mxEngine.h"
#include "rendering/mxHardwareRendererInterface.h"
#include "rendering/mxRendererInterface.h"
#include "rendering/mxSceneRenderer.h"

#include "frame/mx3DManipulationLibrary.h"
#include "frame/mx3DManipulationVersion.h"

#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeBase.h"
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNodeTranslate.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "controller/mxGizmoController.h"
#include "controller/mxGizmoControllerRotate.h"
#include "controller/mxGizmoControllerScale.h"
#include "controller/mxGizmoControllerTranslate.h"

// The Qt event filter, qt/mxGizmoEventsListener.h, is included on its own: it needs Qt's
// headers, which the rest of the API does not.
