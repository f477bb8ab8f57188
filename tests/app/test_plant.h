// A small plant as text and a run of the program in this process.
#pragma once

#include "command_line.h"
#include "export/scene_builder.h"
#include "lookup/open_plant.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdlib.h>

namespace verdanth::test {

using vdt::test::TemporaryFolder;

struct RunResult {
    int status;
    std::string out, messages;
};

inline RunResult RunApp(const std::vector<std::string>& arguments, bool terminal = false)
{
#ifdef VERDANTH_MODULE // which does not stand beside the tests
    setenv("VERDANTH_MODULE", VERDANTH_MODULE, 1);
#endif
    std::ostringstream out, messages;
    int status = 0;
    {
        Console console(out, messages, terminal);
        status = RunCommandLine(arguments, console);
    }
    return {status, out.str(), messages.str()};
}

/// A scene of the file's default variant, without the host.
inline Scene SceneOf(const std::string& file, vdt::MessageHandler& messages,
                     MaterialQuality quality = MaterialQuality::High, const std::string& season = "summer")
{
    OpenPlant plant;
    plant.handle = plant.cache.acquire(file, messages, vdt::kNone);
    const vdt::ModelVariant* variant = plant.handle.variantData(messages, true);
    Scene scene;
    EXPECT_TRUE(BuildScene({.model = *plant.handle.model(), .variant = *variant, .season = season, .quality = quality},
                           scene, messages));
    return scene;
}

/// What stands in the file; each field may be replaced.
struct PlantText {
    std::string unit = "centimeters";
    std::string materials = R"(
      <material matid="1" name="bark"><diffuse color="0.5 0.25 0"/></material>
      <material matid="2" name="leaf" sides="2"><front><diffuse color="0.2 0.5 0.1"/></front></material>)";
    std::string modelAttributes = R"( name="adult")";
    std::string bound = "<bound>-1 0 -1 5 20 3</bound>";
    std::string qualifiers = R"(
      <qualifiers default="2"><qualifier id="1" name="summer"><label lang="en">High Summer</label></qualifier>
        <qualifier id="2" name="winter"/></qualifiers>)";
    std::string points = "0 0 0  0 10 0  1 20 0  4 14 2";
    std::string polylines = R"(<nvertices>3 2</nvertices><vertices>0 1 2 1 3</vertices>)";
    std::string polylineAttributes = R"(
      <attrib name="matid" type="int" storageclass="primitive">1 1</attrib>
      <attrib name="radius" type="float" storageclass="vertex">1 0.5 0.25 0.25 0.125</attrib>
      <attrib name="tex_v" type="float" storageclass="vertex">0 1 2 0 1</attrib>
      <attrib name="orient" type="float4" storageclass="vertex">0.7071068 0 0 0.7071068  0.7071068 0 0 0.7071068
        0.7071068 0 0 0.7071068  0.5 0.5 0.5 0.5  0.5 0.5 0.5 0.5</attrib>)";
    // The third connector mirrors its leaf.
    std::string connectors = R"(<vertices>2 3 3</vertices>
      <attrib name="group" type="int" storageclass="vertex">1 1 2</attrib>
      <attrib name="orient" type="float4" storageclass="vertex">0 0 0 1  0.5 0.5 -0.5 0.5  0.6 0 0 0.8</attrib>
      <attrib name="scale" type="float" storageclass="vertex">1 2 -0.5</attrib>)";
    std::string meshes = R"(
      <mesh name="blade" group="1" qualifier="summer"><points>0 0 0  1 0 0  1 2 0  0 2 0.5</points>
        <polygons><nvertices>4</nvertices><vertices>0 1 2 3</vertices>
          <attrib name="tex" type="float2" storageclass="vertex">0 0 1 0 1 1 0 0.75</attrib>
          <attrib name="matid" type="int" storageclass="primitive">2</attrib></polygons></mesh>
      <mesh name="bud" group="2"><points>0 0 0  0.5 0 0  0 1 0  0 0 -1</points>
        <polygons><nvertices>3 3</nvertices><vertices>0 1 2 0 2 3</vertices>
          <attrib name="matid" type="int" storageclass="primitive">2 1</attrib></polygons></mesh>)";
    std::string moreModels;

    std::string model() const
    {
        return "<model" + modelAttributes + ">" + bound + qualifiers + "<skeleton><points>" + points +
               "</points><polylines>" + polylines + polylineAttributes + "</polylines><connectors>" + connectors +
               "</connectors></skeleton>" + meshes + "</model>";
    }
    std::string text() const
    {
        return R"(<verdanth version="1.2" creator="test"><plant unit=")" + unit +
               R"(" name="Testa plana"><label lang="en-US">Test Tree</label><label lang="de">Tännchen</label>)" +
               "<materials>" + materials + "</materials>" + model() + moreModels + "</plant></verdanth>";
    }
    /// The same variant as the target of an extref.
    std::string targetText() const { return R"(<verdanth version="1.2">)" + model() + "</verdanth>"; }
};

} // namespace verdanth::test
