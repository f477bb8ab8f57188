PGEOMETRY V5
NPoints 4 NPrims 1
NPointGroups 0 NPrimGroups 0
NPointAttrib 1 NVertexAttrib 0 NPrimAttrib 0 NAttrib 0
PointAttrib
r 1 float nan
nan inf -inf 1 (1e999)
1e999 -1e-999 +.5 1. (0x1)
+-1 0 0 0
0 0 0 0
