// Its object is not linked; window_test_headers.h is compiled beside it.
