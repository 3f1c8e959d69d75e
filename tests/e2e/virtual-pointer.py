#!/usr/bin/env python3
"""Adds a virtual pointer to the Wayland compositor's seat (wlr virtual pointer protocol) and keeps
it until stdin closes or the process is stopped, so the seat has a pointer and compositor cursor
commands reach clients."""
import os, socket, struct, sys

def connect():
    path = os.path.join(os.environ["XDG_RUNTIME_DIR"], os.environ.get("WAYLAND_DISPLAY", "wayland-0"))
    s = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
    s.connect(path)
    return s

def string(text):
    data = text.encode() + b"\0"
    return struct.pack("<I", len(data)) + data + b"\0" * (-len(data) % 4)

def request(sock, obj, opcode, payload=b""):
    sock.sendall(struct.pack("<II", obj, (8 + len(payload)) << 16 | opcode) + payload)

def main():
    sock = connect()
    request(sock, 1, 1, struct.pack("<I", 2))  # wl_display.get_registry -> 2
    request(sock, 1, 0, struct.pack("<I", 3))  # wl_display.sync -> 3
    buffer, manager = b"", None
    done = False
    while not done:
        chunk = sock.recv(4096)
        if not chunk:
            sys.exit("the compositor closed the connection")
        buffer += chunk
        while len(buffer) >= 8:
            obj, word = struct.unpack_from("<II", buffer)
            size = word >> 16
            if len(buffer) < size:
                break
            body, buffer = buffer[8:size], buffer[size:]
            if obj == 2 and word & 0xFFFF == 0:  # wl_registry.global
                name, length = struct.unpack_from("<II", body)
                interface = body[8:8 + length - 1].decode()
                if interface == "zwlr_virtual_pointer_manager_v1":
                    manager = name
            elif obj == 3:
                done = True
    if manager is None:
        sys.exit("the compositor has no virtual pointer manager")
    # wl_registry.bind(name, interface, version 1, id 4), then create_virtual_pointer(seat null, id 5)
    request(sock, 2, 0, struct.pack("<I", manager) + string("zwlr_virtual_pointer_manager_v1") + struct.pack("<II", 1, 4))
    request(sock, 4, 0, struct.pack("<II", 0, 5))
    request(sock, 1, 0, struct.pack("<I", 6))
    print("virtual pointer added", flush=True)
    try:
        while sock.recv(4096):
            pass
    except KeyboardInterrupt:
        pass

main()
