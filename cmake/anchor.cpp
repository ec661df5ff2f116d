// A library target needs one source of its own even while its folder holds only headers, and the
// plug-in's code comes from the subsystem libraries linked in whole.
