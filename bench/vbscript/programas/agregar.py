# SPDX-License-Identifier: Apache-2.0
def correr():
    s = ""
    for i in range(100000):
        s = s + "x"
    return len(s)
