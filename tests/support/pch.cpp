// GoogleTest's headers are compiled here, once for all tests.
