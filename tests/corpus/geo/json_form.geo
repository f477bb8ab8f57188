[
"fileversion","16.5",
"pointcount",8
]
