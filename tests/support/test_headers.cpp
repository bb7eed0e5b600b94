// Its object is not linked; test_headers.h is compiled beside it.
