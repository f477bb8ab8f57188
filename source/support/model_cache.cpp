#include "support/model_cache.h"

#include "support/model_path.h"

namespace {

struct CacheOfModule {
    ModelPathMapper mapper;
    vdt::Cache cache{&mapper};
};

} // namespace

vdt::Cache& ModelCache()
{
    static CacheOfModule& models = *new CacheOfModule;
    return models.cache;
}
