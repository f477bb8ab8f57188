#include "picture/draw_picture.h"

#include "picture/path_tracer.h"

#include <array>
#include <atomic>
#include <thread>

namespace verdanth {
namespace {

constexpr uint32_t kTile = 16;     // pixels a side
constexpr float kBrightest = 6.0F; // a single sample beyond it would leave a speck
constexpr float kExposure = 1.45F;

// Bends the brightest light down to white, and leaves the middle as it is.
float toned(float light)
{
    constexpr float kWhite = 3.2F; // light that becomes full white
    const float x = light * kExposure;
    return std::clamp(x * (1 + x / (kWhite * kWhite)) / (1 + x * 0.55F) * 1.18F, 0.0F, 1.0F);
}

uint8_t toByte(float value)
{
    return static_cast<uint8_t>(std::lround(std::clamp(value, 0.0F, 1.0F) * 255));
}

// What all samples of one pixel saw.
struct PixelSum {
    Light light{0, 0, 0};
    float plant = 0, shadow = 0;

    void add(const Sighting& sighting)
    {
        const Light& l = sighting.light;
        light += Light{std::min(l.x, kBrightest), std::min(l.y, kBrightest), std::min(l.z, kBrightest)};
        plant += sighting.plant;
        shadow += sighting.shadow;
    }
};

class PictureDrawer {
public:
    PictureDrawer(const PathTracer& pathTracer, const Camera& viewpoint, const PictureSettings& pictureSettings,
                  Picture& target)
        : tracer(&pathTracer),
          camera(&viewpoint),
          settings(&pictureSettings),
          picture(&target),
          background(LightOfSrgb(pictureSettings.background)),
          tilesAcross((pictureSettings.width + kTile - 1) / kTile),
          tileCount(tilesAcross * ((pictureSettings.height + kTile - 1) / kTile))
    {
    }

    // Draws tiles until none is left. `report` is called with the share of all tiles begun, and ends it by false.
    template <class Report> void work(Report report)
    {
        for (uint32_t tile = nextTile++; tile < tileCount; tile = nextTile++) {
            if (stopped || !report(static_cast<float>(tile) / static_cast<float>(tileCount))) break;
            drawTile(tile);
        }
    }
    void stop() { stopped = true; }

private:
    void drawTile(uint32_t tile)
    {
        const uint32_t left = tile % tilesAcross * kTile;
        const uint32_t top = tile / tilesAcross * kTile;
        for (uint32_t y = top; y < std::min(top + kTile, settings->height); ++y)
            for (uint32_t x = left; x < std::min(left + kTile, settings->width); ++x) drawPixel(x, y);
    }

    void drawPixel(uint32_t x, uint32_t y)
    {
        const uint32_t index = y * settings->width + x;
        PixelSum sum;
        std::array<Sampler, TracedScene::kBundle> samplers;
        std::array<SceneRay, TracedScene::kBundle> rays;
        std::array<Sighting, TracedScene::kBundle> sightings;
        for (uint32_t first = 0; first < settings->samples; first += TracedScene::kBundle) {
            const uint32_t count = std::min<uint32_t>(TracedScene::kBundle, settings->samples - first);
            for (uint32_t i = 0; i < count; ++i) {
                samplers[i] = Sampler(index, first + i);
                const SamplePoint place = samplers[i].next();
                rays[i] = camera->ray(static_cast<float>(x) + 0.5F + spread(place.u),
                                      static_cast<float>(y) + 0.5F + spread(place.v));
            }
            tracer->look({rays.data(), count}, {samplers.data(), count}, sightings);
            for (uint32_t i = 0; i < count; ++i) sum.add(sightings[i]);
        }
        sum.shadow *= edgeFade(x, settings->width) * edgeFade(y, settings->height);
        develop(sum, &picture->pixels[size_t{index} * 4]);
    }

    // No shadow is cut by the picture's edge: 0 there, 1 a little inside.
    static float edgeFade(uint32_t place, uint32_t side)
    {
        constexpr float kFade = 0.05F; // of the side
        const float share = (static_cast<float>(place) + 0.5F) / static_cast<float>(side);
        return SmoothStep(0, kFade, std::min(share, 1 - share));
    }

    // From an even to a tent-like density over two pixels: samples near the middle are more frequent, which smooths
    // edges as a weight would.
    static float spread(float u) { return u < 0.5F ? std::sqrt(2 * u) - 1 : 1 - std::sqrt(2 - 2 * u); }

    void develop(const PixelSum& sum, uint8_t* bytes) const
    {
        const float share = 1 / static_cast<float>(settings->samples);
        const float plant = sum.plant * share;
        const Light light = sum.plant > 0 ? sum.light * (1 / sum.plant) : Light{0, 0, 0};
        const Light shown{toned(light.x), toned(light.y), toned(light.z)};
        const float open = sum.plant < static_cast<float>(settings->samples)
                               ? 1 - sum.shadow / (static_cast<float>(settings->samples) - sum.plant)
                               : 1;
        if (settings->ground == Ground::Plain) {
            write(shown * plant + background * (open * (1 - plant)), 1, bytes);
            return;
        }
        // Pictures are laid over others in sRGB, so the shadow's part is told in it too.
        const float shadow = (1 - plant) * (1 - SrgbFromLinear(open));
        const float alpha = plant + shadow;
        write(alpha > 0 ? shown * (plant / alpha) : Light{0, 0, 0}, alpha, bytes);
    }

    static void write(const Light& light, float alpha, uint8_t* bytes)
    {
        bytes[0] = toByte(SrgbFromLinear(light.x));
        bytes[1] = toByte(SrgbFromLinear(light.y));
        bytes[2] = toByte(SrgbFromLinear(light.z));
        bytes[3] = toByte(alpha);
    }

    const PathTracer* tracer;
    const Camera* camera;
    const PictureSettings* settings;
    Picture* picture;
    Light background;
    uint32_t tilesAcross;
    uint32_t tileCount;
    std::atomic<uint32_t> nextTile{0};
    std::atomic<bool> stopped{false};
};

} // namespace

bool DrawPicture(const TracedScene& scene, const Camera& camera, const PictureSettings& settings, Picture& picture,
                 vdt::MessageHandler& messages)
{
    picture = {settings.width, settings.height, {}};
    picture.pixels.resize(size_t{4} * settings.width * settings.height);
    const Sky sky(settings.sun, camera.view().azimuth);
    const PathTracer tracer(scene, sky, settings.ground == Ground::None ? 0 : camera.halfWidthAtPlant());
    PictureDrawer drawer(tracer, camera, settings, picture);

    messages.beginProgress("drawing");
    {
        std::vector<std::jthread> helpers;
        const unsigned threads = settings.threads ? settings.threads : std::thread::hardware_concurrency();
        for (unsigned i = 1; i < threads; ++i)
            helpers.emplace_back([&drawer] { drawer.work([](float) { return true; }); });
        drawer.work([&](float share) {
            messages.progress(share);
            if (messages.isCancelled()) drawer.stop();
            return !messages.isCancelled();
        });
    }
    messages.endProgress();
    return !messages.isCancelled();
}

} // namespace verdanth
