#!/usr/bin/env python3
"""docs/at-scale.md is true: its table, its command and its questions give its answers on a ClickHouse
server of the test's own, and again on two of them; the tool finds the same.

Usage: column_store.py TOOL
"""
import itertools
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import time

SERVER, CLIENT = "clickhouse-server", "clickhouse-client"
CONFIGURATION = """<yandex>
  <logger><level>warning</level><console>true</console></logger>
  <listen_host>127.0.0.1</listen_host> <tcp_port>{port}</tcp_port>
  <path>{folder}/data/</path> <tmp_path>{folder}/tmp/</tmp_path>
  <users_config>{folder}/config.xml</users_config>
  <default_profile>default</default_profile> <default_database>default</default_database>
  <mark_cache_size>67108864</mark_cache_size>
  <profiles><default/></profiles> <quotas><default/></quotas>
  <users><default>
    <password/><networks><ip>127.0.0.1</ip></networks><profile>default</profile><quota>default</quota>
  </default></users>
  {cluster}
</yandex>
"""


def blocks_of(page):
    """The indented blocks of a page, in order."""
    grouped = itertools.groupby(open(page), lambda line: line.startswith("    "))
    return ["".join(line[4:] for line in lines) for indented, lines in grouped if indented]


def free_ports(count):
    sockets = [socket.create_server(("127.0.0.1", 0)) for _ in range(count)]
    ports = [one.getsockname()[1] for one in sockets]
    for one in sockets:
        one.close()
    return ports


def write(name, text):
    with open(name, "w") as file:
        file.write(text)


class Server:
    def __init__(self, folder, port, cluster):
        os.mkdir(folder)
        write(folder + "/config.xml", CONFIGURATION.format(port=port, folder=folder, cluster=cluster))
        self.port, self.log = port, folder + "/log"
        # Rows that are inserted have reached their shard when the client ends.
        self.client = [shutil.which(CLIENT), "--host=127.0.0.1", f"--port={port}", "--insert_distributed_sync=1"]
        with open(self.log, "w") as log:
            self.process = subprocess.Popen([SERVER, f"--config-file={folder}/config.xml"], cwd=folder,
                                            stdout=log, stderr=log)

    def wait(self):
        for _ in range(600):
            if self.process.poll() is not None:
                break
            try:
                return socket.create_connection(("127.0.0.1", self.port)).close()
            except OSError:
                time.sleep(0.1)
        sys.exit("the server does not answer:\n" + open(self.log).read())

    def ask(self, query):
        return subprocess.run(self.client, input=query, text=True, check=True, stdout=subprocess.PIPE).stdout


def main(tool, folder, servers):
    blocks = blocks_of("docs/at-scale.md")

    def block(start):
        return next(block for block in blocks if block.startswith(start))

    table, over_all = block("CREATE TABLE paths\n"), block("CREATE TABLE paths AS")
    load = block("$ bgpcomm paths")[2:]
    questions = [pair for pair in zip(blocks, blocks[1:]) if pair[0].startswith("SELECT")]
    assert len(questions) == 5, questions

    ports = free_ports(2)
    cluster = block("<remote_servers>").replace("9000", str(ports[0])).replace("9001", str(ports[1]))
    for number, port in enumerate(ports):
        servers.append(Server(f"{folder}/{number}", port, cluster))
    first, second = servers
    first.wait()
    second.wait()

    # The commands of the page, found under their names.
    os.mkdir(folder + "/bin")
    os.symlink(os.path.realpath(tool), folder + "/bin/bgpcomm")
    client = f"{folder}/bin/{CLIENT}"
    write(client, f'#!/bin/sh\nexec {" ".join(first.client)} "$@"\n')
    os.chmod(client, 0o755)
    environment = {**os.environ, "PATH": f"{folder}/bin:{os.environ['PATH']}", "XDG_CONFIG_HOME": folder}

    def run(command):
        return subprocess.run(["sh", "-ec", command], env=environment, check=True, text=True,
                              stdout=subprocess.PIPE).stdout

    def check(where):
        for query, answer in questions:
            found = first.ask(query)
            assert found == answer, f"{where}:\n{query}\n{found}"
        # The tool's answers to the same questions.
        peers = [line.split("\t") for line in first.ask(questions[0][0]).splitlines()]
        assert run("bgpcomm paths --where no-export --group-by peer samples/rib.bird.mrt.gz") == "".join(
            f"{routes}\t{peer} AS{number}\n" for peer, number, routes in peers)
        unknown = first.ask(questions[2][0]).split("\t")[-1]
        assert run("bgpcomm paths --where unknown --count samples/rib.bird.mrt.gz") == unknown
        blackholes = first.ask(questions[3][0].replace("LIMIT 3", "")).splitlines()
        assert run("bgpcomm paths --where blackhole --count samples/rib.bird.mrt.gz") == f"{len(blackholes)}\n"
        # A blackholed prefix is taken back, and another one announced without.
        (gone, peer), (changed, other) = (line.split("\t") for line in blackholes[:2])
        columns = "(collector, time, record, peer, announced, withdrawn)"
        first.ask(f"INSERT INTO paths {columns} VALUES "
                  f"('sample', '2026-11-22 00:00:00', 1, '{peer}', [], ['{gone}']), "
                  f"('sample', '2026-11-22 00:00:00', 2, '{other}', ['{changed}'], ['{changed}'])")
        left = first.ask(questions[3][0].replace("LIMIT 3", "")).splitlines()
        assert left == blackholes[2:], left

    first.ask(table)
    run(load)
    check("one server")
    first.ask("DROP TABLE paths")

    for server in servers:
        server.ask("CREATE DATABASE shard")
        server.ask(table.replace("TABLE paths", "TABLE shard.paths"))
        server.ask(over_all)
    run(load)
    rows = [int(server.ask("SELECT count() FROM shard.paths")) for server in servers]
    assert all(rows), rows
    check(f"two servers, {rows[0]} and {rows[1]} rows")
    print(f"{len(questions)} questions, one server and two with {rows[0]} and {rows[1]} rows")


if not shutil.which(SERVER) or not shutil.which(CLIENT):
    print(f"{SERVER} or {CLIENT} is not installed")
    sys.exit(77)
with tempfile.TemporaryDirectory() as folder:
    servers = []
    try:
        main(sys.argv[1], folder, servers)
    finally:
        for server in servers:
            server.process.kill()
            server.process.wait()
