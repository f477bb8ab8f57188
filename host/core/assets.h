// The files that a scene needs: asking the nodes for them, and finding where they stand.
#pragma once

#include "core/document.h"

#include <vector>

/// Takes what nodes report to an AssetData.
class RootTextureString {
public:
    struct Asset {
        Filename file; // as it was told; it need not exist
        host::Marker owner = 0;
        bool onDemand = false;
    };

    /// False if a file of the same path is known already.
    bool Add(const Asset& asset);
    const std::vector<Asset>& Assets() const { return assets; }

private:
    std::vector<Asset> assets;
};

namespace host {

/// Asks all nodes but those of material plug-ins. In order of the nodes, each path once.
std::vector<RootTextureString::Asset> CollectAssets(BaseDocument& document, ASSETDATA_FLAG flags);

/// Pictures lie in the folder "tex" of a project, all other files beside the scene.
bool IsPicture(const Filename& file);

} // namespace host
