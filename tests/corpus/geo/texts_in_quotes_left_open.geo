PGEOMETRY V5
NPoints 2 NPrims 1
NPointGroups 0 NPrimGroups 0
NPointAttrib 2 NVertexAttrib 0 NPrimAttrib 1 NAttrib 0
PointAttrib
"a b" 1 index 1 "x y"
c 2 f [1 2] "3
0 0 0 1 ("a b c
0 0 0 1 ([1 2 3
