// The control mesh by general matrices and virtual calls: slow and plain, the judge of the fast one.
#pragma once

#include "vdt/generate/control_mesh.h"
#include "vdt/skeleton/frames.h"
#include "vdt/skeleton/ring.h"

#include <algorithm>

namespace vdt::test {

class LiteralControlMesh {
public:
    explicit LiteralControlMesh(const ControlMeshRequest& controlMeshRequest) : request(controlMeshRequest)
    {
        request.polygonLevels.clear();
        if (request.pointSources) request.pointSources->clear();
        SkeletonWalker walker(request.skeleton, false, WalkFilter::SkipDeadSides);
        while (walker.advance()) {
            const SkeletonVertex& vertex = walker.vertex();
            const int32_t level = request.subdivisionLevel - static_cast<int32_t>(walker.depth()) + 1;
            if (!vertex.prev) stack.push_back({std::exchange(carried, {}), 0, std::max(0, level)});
            if (!MeshSegment(walker)) return;
            if (vertex.next) continue;
            if (vertex.prev && vertex.ring && vertex.ring != &vertex && others(vertex) == 1)
                std::swap(carried, stack.back().ring);
            stack.pop_back();
        }
    }

private:
    struct Data {
        std::vector<uint64_t> ring;
        float lastTexV;
        int32_t level;
    };

    static int others(const SkeletonVertex& vertex)
    {
        int count = 0;
        for (const SkeletonVertex& other : RingOthers(vertex)) count += other.attributes.radius > kEpsilon;
        return count;
    }

    bool MeshSegment(const SkeletonWalker& walker)
    {
        const SkeletonVertex& vertex = walker.vertex();
        Data& data = stack.back();
        const VertexAttributes& a = vertex.attributes;
        const int32_t matid = request.skeleton.branches[vertex.branch].matid;
        Matrix frame = ToMatrix(a.orient, request.skeleton.points[vertex.point].position);
        const double r = data.level <= 0 ? a.radius * 1.772453850905516 * 0.5 : a.radius;
        if (!vertex.prev) {
            if (!data.ring.empty()) return true;
            data.ring = MakeRing(frame, r, 0, vertex.point);
            data.lastTexV = a.tex_v;
            if (walker.depth() == 1) cap(MakeRing(frame, r, 2, vertex.point), {{0, 0}, {0, 1}, {1, 1}, {1, 0}}, matid);
            return true;
        }
        if (data.ring.size() != 4) return false;
        if (vertex.next) MiterFrame(frame, vertex);
        const std::vector<uint64_t> ring = MakeRing(frame, r, 0, vertex.point);
        const float front = vertex.next ? a.tex_v : data.lastTexV, back = vertex.next ? data.lastTexV : a.tex_v;
        float uPrev = 1;
        for (size_t k = 1; k <= 4; ++k) {
            const float u = 1 - static_cast<float>(k) / 4.0F;
            AddQuad(request.output, {ring[k - 1], ring[k % 4], data.ring[k % 4], data.ring[k - 1]},
                    {{uPrev, front}, {u, front}, {u, back}, {uPrev, back}}, matid);
            uPrev = u;
            request.polygonLevels.push_back(data.level);
        }
        data.ring = ring;
        data.lastTexV = a.tex_v;
        if (!vertex.next && r > kEpsilon && others(vertex) == 0) {
            std::vector<uint64_t> tip = MakeRing(frame, r, 1, vertex.point);
            std::reverse(tip.begin(), tip.end());
            cap(tip, {{1, 0}, {1, 1}, {0, 1}, {0, 0}}, matid);
        }
        return true;
    }

    void cap(const std::vector<uint64_t>& ring, const Vector2f (&uvs)[4], int32_t matid)
    {
        AddQuad(request.output, {ring[0], ring[1], ring[2], ring[3]}, uvs, matid);
        request.polygonLevels.push_back(stack.back().level);
    }

    std::vector<uint64_t> MakeRing(const Matrix& frame, double k, int mode, uint64_t point)
    {
        std::vector<uint64_t> ring;
        const Vector3 corners[] = {{1, 1, 0}, {1, -1, 0}, {-1, -1, 0}, {-1, 1, 0}};
        for (const Vector3& corner : corners) {
            const Vector3 normal = mode == 0 ? corner : Vector3{0, 0, mode == 1 ? 1.0 : -1.0};
            ring.push_back(request.output.AddPoint(TransformPoint(k * corner, frame),
                                                   Normalized(TransformVector(normal, NormalMatrix(frame)))));
            if (request.pointSources) request.pointSources->push_back(point);
        }
        return ring;
    }

    void MiterFrame(Matrix& frame, const SkeletonVertex& vertex) const
    {
        const auto position = [&](const SkeletonVertex* v) { return request.skeleton.points[v->point].position; };
        Vector3 a = position(&vertex) - position(vertex.prev), b = position(vertex.next) - position(&vertex);
        if (!Normalize(a) || !Normalize(b)) return;
        const double c = std::fabs(std::cos(0.5 * std::acos(Dot(a, b))));
        if (!(c > 0.001 && c < 0.999)) return;
        const Vector3 t = Normalized(VertexTangent(request.skeleton, vertex)), w = Normalized(Cross(b, a));
        Matrix basis = Matrix::Identity();
        basis.setRow(0, t);
        basis.setRow(1, Cross(t, w));
        basis.setRow(2, w);
        basis.setRow(3, frame.row(3));
        Matrix stretched = basis;
        stretched.setRow(1, std::clamp(1 / c, 1.0, 20.0) * basis.row(1));
        frame = frame * Inverse(basis) * stretched;
    }

    const ControlMeshRequest& request;
    std::vector<Data> stack;
    std::vector<uint64_t> carried;
};

} // namespace vdt::test
