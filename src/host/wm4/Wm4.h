// Every Wm4 name the library and the host use, in one include.
#pragma once

#include "Wm4ColorRGB.h"
#include "Wm4ColorRGBA.h"
#include "Wm4IntrLine3Plane3.h"
#include "Wm4Line3.h"
#include "Wm4Math.h"
#include "Wm4Matrix3.h"
#include "Wm4Plane3.h"
#include "Wm4Vector2.h"
#include "Wm4Vector3.h"
