#include "support/model_path.h"

#include "support/text.h"

#include <algorithm>

namespace {

std::string withBackslashes(std::string path)
{
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

} // namespace

std::string ModelPath(const Filename& file)
{
    return withBackslashes(ToUtf8(file));
}

std::string ModelPathMapper::map(std::string_view path) const
{
    const Filename file(ToHostString(withBackslashes(std::string(path))));
    if (GeFExist(file)) return std::string(path);

    const Filename oneUp = file.GetDirectory().GetDirectory() + file.GetFile();
    if (GeFExist(oneUp)) return ModelPath(oneUp);

    BaseDocument* document = GetActiveDocument();
    Filename found;
    if (document && GenerateTexturePath(document->GetDocumentPath(), file, Filename(), &found)) return ModelPath(found);
    return std::string(path);
}
