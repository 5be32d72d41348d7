#include "mxBaseGeometry.h"

#include "system/mxLogObject.h"

#include <algorithm>

namespace mx {

namespace {
const Wm4::Vector3<float> csNoVertex(0.0f, 0.0f, 0.0f);
} // namespace

const mxRtti mxBaseGeometry::TYPE("mxCore.mxBaseGeometry", &mxRenderableSpatial::TYPE);

mxBaseGeometry::mxBaseGeometry(unsigned int vertexCount, unsigned int indexCount)
    : vertices(vertexCount, Wm4::Vector3<float>(0.0f, 0.0f, 0.0f)), indices(indexCount, 0u),
      color(Wm4::ColorRGBA::WHITE), modelVersion(1), generatedVersion(0) {}

mxBaseGeometry::~mxBaseGeometry() = default;

const mxRtti& mxBaseGeometry::GetType() const { return TYPE; }

void mxBaseGeometry::UpdateWorldBound() {
    if (getDirtyFlags() & DIRTY_MODEL) {
        modelBound.computeFromPoints(vertices);
    }
    if (!isBoundKept()) {
        worldBound = modelBound.transformedBy(getWorldTransform());
    }
    clearDirtyFlags(DIRTY_BOUND | DIRTY_MODEL);
}

bool mxBaseGeometry::checkRenderable(bool verbose) const {
    const char* reason = nullptr;
    if (indices.empty()) {
        reason = "no index";
    } else if (std::any_of(indices.begin(), indices.end(),
                           [this](unsigned int index) { return index >= vertices.size(); })) {
        reason = "an index names no vertex";
    }
    if (reason && verbose) {
        mxLogObject(MX_LOG_INFO, nullptr, mxLog::msInstance, nullptr, true)
            << GetType().getName() << " '" << GetName() << "' is not renderable: " << reason;
    }
    return reason == nullptr;
}

void mxBaseGeometry::UpdateMS(bool updateBound, bool updateNormals, int /*tangentSpace*/) {
    if (updateBound) {
        modelBound.computeFromPoints(vertices);
        setDirty(DIRTY_BOUND, true, false);
    }
    if (updateNormals) {
        UpdateModelNormals();
    }
}

void mxBaseGeometry::UpdateModelNormals() {}

const Wm4::Vector3<float>& mxBaseGeometry::getVertexPosition(unsigned int index) const {
    return index < vertices.size() ? vertices[index] : csNoVertex;
}

void mxBaseGeometry::setVertexPosition(unsigned int index, const Wm4::Vector3<float>& position) {
    if (index >= vertices.size()) {
        return;
    }
    vertices[index] = position;
    modelChanged();
}

unsigned int mxBaseGeometry::getIndex(unsigned int position) const {
    return position < indices.size() ? indices[position] : 0u;
}

void mxBaseGeometry::setIndex(unsigned int position, unsigned int vertex) {
    if (position >= indices.size()) {
        return;
    }
    indices[position] = vertex;
    modelChanged();
}

void mxBaseGeometry::setColor(const Wm4::ColorRGB& rgb) {
    color = Wm4::ColorRGBA(rgb.R(), rgb.G(), rgb.B(), color.A());
}

void mxBaseGeometry::setColor(const Wm4::ColorRGBA& rgba) { color = rgba; }

void mxBaseGeometry::modelChanged() {
    ++modelVersion;
    setDirty(DIRTY_MODEL, true, false);
}

mxGeometry* mxBaseGeometry::getGeneratedGeometry() {
    if (generated && generatedVersion == modelVersion) {
        return generated.get();
    }
    if (!generated) {
        generated = new mxGeometry(getPrimitive());
    }
    generated->setPrimitive(getPrimitive());
    // Buffers are reused while their kinds and sizes fit, so a renderer keeps its GPU
    // objects. The geometry is handed out writable, so a slot may hold anything by now.
    const mxBuffer* vertexBuffer = generated->getGeneratedBuffer(0);
    if (!vertexBuffer || vertexBuffer->getKind() != mxBuffer::VERTEX ||
        vertexBuffer->getElementCount() != vertices.size()) {
        generated->setGeneratedBuffer(
            0, new mxBuffer(mxBuffer::VERTEX, static_cast<unsigned int>(vertices.size())));
    }
    const mxBuffer* indexBuffer = generated->getGeneratedBuffer(1);
    if (!indexBuffer || indexBuffer->getKind() != mxBuffer::INDEX ||
        indexBuffer->getElementCount() != indices.size()) {
        generated->setGeneratedBuffer(
            1, new mxBuffer(mxBuffer::INDEX, static_cast<unsigned int>(indices.size())));
    }
    float* vertexData = generated->editGeneratedBuffer(0)->editVertices();
    for (const Wm4::Vector3<float>& vertex : vertices) {
        *vertexData++ = vertex.X();
        *vertexData++ = vertex.Y();
        *vertexData++ = vertex.Z();
    }
    std::copy(indices.begin(), indices.end(), generated->editGeneratedBuffer(1)->editIndices());
    generatedVersion = modelVersion;
    return generated.get();
}

} // namespace mx
