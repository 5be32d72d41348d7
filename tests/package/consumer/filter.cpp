// The Qt event filter of the installed package, built when the package brings Qt along.
#include <mx3DManipulation/mx3DManipulation.h>
#include <mx3DManipulation/qt/mxGizmoEventsListener.h>

#include <cstring>

bool packagedFilterWorks(mx::mxEngine& engine) {
    mx::mxGizmoEventsListener filter(&engine);
    return filter.getController() == nullptr &&
           filter.qt_metacast("mx::mxGizmoEventsListener") == &filter &&
           std::strcmp(filter.metaObject()->className(), "mx::mxGizmoEventsListener") == 0;
}
