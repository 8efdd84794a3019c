// The headers that most tests include are compiled here, once for all of them.
