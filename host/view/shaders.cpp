#include "view/shaders.h"

namespace host {

const char* const kProjectionText = R"(#version 330 core
uniform mat4 spaceFromLocal; // to camera space, or to the screen's pixels
uniform vec4 projection;     // x, y: picture's half sides per unit; z, w: factor and term of depth
uniform vec2 viewport;       // pixels
uniform float nearest;       // depth
uniform int space;           // 0 perspective, 1 parallel, 2 and 3 the same for the screen
uniform float depthOffset;

vec4 pulled(vec4 clip)
{
    clip.z -= depthOffset * 1.2e-7 * clip.w;
    return clip;
}

vec4 project(vec3 p)
{
    if (space == 0) return pulled(vec4(p.xy * projection.xy, p.z * projection.z + projection.w, p.z));
    if (space == 1) return pulled(vec4(p.xy * projection.xy, p.z * projection.z + projection.w, 1));
    float depth = space == 2 ? projection.z + projection.w / max(p.z, nearest) : p.z * projection.z + projection.w;
    vec2 onScreen = vec2(2 * p.x / viewport.x - 1, 1 - 2 * p.y / viewport.y);
    return pulled(vec4(onScreen, clamp(depth, -1, 1), 1));
}
)";

const char* const kMeshVertexText = R"(
layout(location = 0) in vec3 position;
layout(location = 2) in vec3 normal;
uniform mat4 normalFromLocal;
out vec3 cameraPosition;
out vec3 cameraNormal;

void main()
{
    cameraPosition = (spaceFromLocal * vec4(position, 1)).xyz;
    cameraNormal = mat3(normalFromLocal) * normal;
    gl_Position = project(cameraPosition);
}
)";

const char* const kFlatVertexText = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec4 color;
uniform float size;
out vec4 vertexColor;

void main()
{
    vertexColor = color;
    gl_PointSize = size;
    gl_Position = project((spaceFromLocal * vec4(position, 1)).xyz);
}
)";

// Four corners of a ribbon as wide as the line, for each pair of ends. What lies behind the viewer is cut off first,
// for it has no place in the picture.
const char* const kLineVertexText = R"(
layout(location = 0) in vec3 begin;
layout(location = 1) in vec4 beginColor;
layout(location = 3) in vec3 end;
layout(location = 4) in vec4 endColor;
uniform float size;
out vec4 vertexColor;

void main()
{
    vec3 a = (spaceFromLocal * vec4(begin, 1)).xyz, b = (spaceFromLocal * vec4(end, 1)).xyz;
    float from = 0, to = 1;
    if (space == 0) {
        if (a.z < nearest && b.z < nearest) {
            vertexColor = beginColor;
            gl_Position = vec4(2, 2, 2, 1);
            return;
        }
        if (a.z < nearest) from = (nearest - a.z) / (b.z - a.z);
        if (b.z < nearest) to = (nearest - a.z) / (b.z - a.z);
    }
    vec4 first = project(mix(a, b, from)), last = project(mix(a, b, to));
    vec2 along = (last.xy / last.w - first.xy / first.w) * viewport;
    along = dot(along, along) > 1e-12 ? normalize(along) : vec2(1, 0);
    bool atEnd = (gl_VertexID & 1) == 1;
    float side = (gl_VertexID & 2) == 2 ? 1.0 : -1.0;
    vec4 place = atEnd ? last : first;
    place.xy += vec2(-along.y, along.x) * side * size / viewport * place.w;
    vertexColor = mix(beginColor, endColor, atEnd ? to : from);
    gl_Position = place;
}
)";

const char* const kBackdropVertexText = R"(#version 330 core
uniform vec3 top, bottom;
out vec4 vertexColor;

void main()
{
    vec2 place = vec2(gl_VertexID == 1 ? 3 : -1, gl_VertexID == 2 ? 3 : -1);
    vertexColor = vec4(mix(bottom, top, (place.y + 1) / 2), 1);
    gl_Position = vec4(place, 1, 1);
}
)";

const char* const kColorText = R"(#version 330 core
out vec4 shown;

vec3 linearFromDisplay(vec3 c)
{
    return mix(c / 12.92, pow((max(c, 0) + 0.055) / 1.055, vec3(2.4)), greaterThan(c, vec3(0.04045)));
}

vec3 displayFromLinear(vec3 c)
{
    return mix(c * 12.92, 1.055 * pow(max(c, 0), vec3(1 / 2.4)) - 0.055, greaterThan(c, vec3(0.0031308)));
}
)";

// A key light from the upper left behind the viewer, a weak one from the right, and a sky that is brighter above.
// Leaves are seen from both sides: a normal always counts towards the viewer.
const char* const kMeshFragmentText = R"(
in vec3 cameraPosition;
in vec3 cameraNormal;
uniform vec4 color;
uniform bool colorIsLinear;
uniform bool perspective;
uniform vec3 up; // the world's, as the camera sees it

void main()
{
    vec3 normal = cameraNormal;
    if (dot(normal, normal) < 1e-20) normal = cross(dFdx(cameraPosition), dFdy(cameraPosition));
    normal = normalize(normal);
    vec3 toViewer = perspective ? normalize(-cameraPosition) : vec3(0, 0, -1);
    if (dot(normal, toViewer) < 0) normal = -normal;

    float key = max(dot(normal, normalize(vec3(-0.45, 0.6, -0.75))), 0);
    float fill = max(dot(normal, normalize(vec3(0.8, 0.1, -0.6))), 0);
    float sky = 0.5 + 0.5 * dot(normal, up);
    float light = 0.78 * key + 0.12 * fill + mix(0.1, 0.28, sky);
    vec3 surface = colorIsLinear ? color.rgb : linearFromDisplay(color.rgb);
    shown = vec4(displayFromLinear(clamp(surface * light, 0, 1)), color.a);
}
)";

const char* const kFlatFragmentText = R"(
in vec4 vertexColor;
uniform bool colorIsLinear;

void main()
{
    shown = colorIsLinear ? vec4(displayFromLinear(clamp(vertexColor.rgb, 0, 1)), vertexColor.a) : vertexColor;
}
)";

} // namespace host
