# SPDX-License-Identifier: Apache-2.0
def correr():
    d = {}
    for i in range(1, 100001):
        d["clave" + str(i)] = i
    t = 0
    for i in range(1, 100001):
        t = t + d["clave" + str(i)]
    return t
