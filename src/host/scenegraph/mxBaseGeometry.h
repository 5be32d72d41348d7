// mxBaseGeometry: a drawable spatial with model data: vertex positions in model space, an
// index list, a colour, and a model bound. Its world bound is the model bound carried by the
// world transformation. For drawing it generates an mxGeometry (vertex and index buffers),
// regenerated when the model data changed.
//
// Reading or writing a vertex or index out of range does nothing (reads give zero).
#pragma once

#include "mxBoundingVolume.h"
#include "mxGeometry.h"
#include "mxPointer.h"
#include "mxRenderableSpatial.h"

#include "wm4/Wm4ColorRGB.h"
#include "wm4/Wm4ColorRGBA.h"
#include "wm4/Wm4Vector3.h"

#include <cstdint>
#include <vector>

namespace mx {

class mxBaseGeometry : public mxRenderableSpatial {
public:
    static const mxRtti TYPE;

    ~mxBaseGeometry() override;
    const mxRtti& GetType() const override;

    void UpdateWorldBound() override;

    // Whether there is something to draw: at least one index and every index names a vertex.
    // verbose writes the reason to the log when there is not.
    virtual bool checkRenderable(bool verbose) const;
    // Model-space update: updateBound recomputes the model bound (and marks the world bound
    // stale), updateNormals the normals (geometries that have some). This host keeps no
    // tangent spaces: tangentSpace is accepted and ignored.
    virtual void UpdateMS(bool updateBound, bool updateNormals, int tangentSpace);
    // Recomputes normals from the model data; geometries without normals do nothing.
    virtual void UpdateModelNormals();

    unsigned int getVertexCount() const { return static_cast<unsigned int>(vertices.size()); }
    const Wm4::Vector3<float>& getVertexPosition(unsigned int index) const;
    void setVertexPosition(unsigned int index, const Wm4::Vector3<float>& position);
    const std::vector<Wm4::Vector3<float>>& getVertices() const { return vertices; }

    unsigned int getIndexCount() const { return static_cast<unsigned int>(indices.size()); }
    unsigned int getIndex(unsigned int position) const;
    void setIndex(unsigned int position, unsigned int vertex);
    const std::vector<unsigned int>& getIndices() const { return indices; }

    const mxBoundingVolume& getModelBound() const { return modelBound; }

    // Red, green and blue of color; the alpha stays as it was.
    void setColor(const Wm4::ColorRGB& color);
    void setColor(const Wm4::ColorRGBA& color);
    // Opaque white until set.
    const Wm4::ColorRGBA& getColor() const { return color; }

    // The generated vertex and index buffers, rebuilt first if the model data changed.
    mxGeometry* getGeneratedGeometry();

    // Advances whenever vertices, indices or the way they are read change.
    std::uint64_t getModelVersion() const { return modelVersion; }

protected:
    mxBaseGeometry(unsigned int vertexCount, unsigned int indexCount);

    // How the generated index buffer is to be read.
    virtual mxGeometry::Primitive getPrimitive() const = 0;
    // Records a change of the model data (the model bound goes stale).
    void modelChanged();
    // Records a change of how the data is read, which leaves the bound as it is.
    void readingChanged() { ++modelVersion; }

private:
    std::vector<Wm4::Vector3<float>> vertices;
    std::vector<unsigned int> indices;
    mxBoundingVolume modelBound;
    Wm4::ColorRGBA color;
    std::uint64_t modelVersion;
    mxPointer<mxGeometry> generated;
    std::uint64_t generatedVersion;
};

} // namespace mx
