// Compiled into every program that links the Quorvelle widgets library. The library does its
// work partly when it is loaded (the alternating-row colours, the button-cell hook); a
// program that uses nothing else of it would lose it to a linker running with --as-needed,
// which keeps a library only for references made before it. This one is.
extern "C" void qv_widgets_load_anchor();
[[gnu::used]] static void (*const qv_widgets_load)() = &qv_widgets_load_anchor;
