PGEOMETRY V5
NPoints 1 NPrims 2
NPointGroups 0 NPrimGroups 0
NPointAttrib 0 NVertexAttrib 0 NPrimAttrib 0 NAttrib 0
0 0 0 1
Run 2147483647 Poly
 1 : 0
 2147483647 : 0 0
