PGEOMETRY V5
NPoints 1 NPrims 2
NPointGroups 0 NPrimGroups 0
NPointAttrib 0 NVertexAttrib 1 NPrimAttrib 0 NAttrib 0
0 0 0 1
VertexAttrib
r 1 f 1
Poly 3 : -1 (1) 2147483647 (2) -2147483648
Poly 0 <
