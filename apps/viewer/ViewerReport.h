// ViewerReport: what a script run leaves behind, as JSON: every object's final local and world
// transformations, the selection and the gizmo, the motion-listener callbacks in order, the
// undo history, the steps as played, the screenshots and the host log's lines.
//
// A transformation is written as {"rs": bool, "uniform": bool, "matrix": [9 numbers, row by
// row], "scale": [3], "translate": [3]}: the stored matrix (the rotation of an RS
// transformation), its scale and its translation. Numbers are single-precision values written
// so that reading them back as float gives the same bits.
#pragma once

#include "scenegraph/mxGenericTransformation.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace viewer {

class ViewerSession;

class ViewerReport {
public:
    static QJsonObject build(const ViewerSession& session, const QString& scriptName,
                             const QJsonArray& steps, const QStringList& screenshots,
                             const QStringList& logLines);

    static QJsonObject transformation(const mx::mxGenericTransformation<float>& transformation);
};

} // namespace viewer
