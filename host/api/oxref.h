// Parameters of the external reference object.
#pragma once

enum {
    ID_CA_XREF_NAMESPACE = 1007 // String
};
