tarnwell_fuzz_target(rtf SOURCE rtf.cpp LINKS tarnwell_richtext)
