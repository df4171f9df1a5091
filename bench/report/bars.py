"""The jobs that are looked at, what each is compared with, and the figure that it has to reach."""
from dataclasses import dataclass, field

SIZES = (20, 200, 2000, 20000, 200000)
LARGER_SIZES = SIZES[1:]
MIDDLE_SIZES = (200, 2000, 20000)
OBJECT_TREE_SIZES = (10, 1000, 100000)

TIME = "time"      # of CPU, per leaf
PEAK = "peak"      # bytes of memory at one time
ALLOCATIONS = "allocations"


@dataclass
class Row:
    """A job: the worst ratio of its pairs of benchmarks has to reach the bar."""
    job: str
    bar: float
    goal: float | None
    pairs: list = field(default_factory=list)  # (benchmark, peer)
    metric: str = TIME


def _against(program, names, peer, way="request"):
    return [(f"{program}/{name}/{way}", f"{program}/{name}/{peer}") for name in names]


def _sizes(sizes, prefix="size"):
    return [f"{prefix}:{size}" for size in sizes]


def _to_gpb(title, program):
    return [
        Row(f"{title}, 200 to 20,000 leaves / reflection floor", 0.25, None,
            _against(program, _sizes(MIDDLE_SIZES), "floor")),
        Row(f"{title}, 200 to 20,000 leaves / textbook way", 1 / 6.5, None,
            _against(program, _sizes(MIDDLE_SIZES), "textbook")),
        Row(f"{title}, 200 to 20,000 leaves / generated-code walk", None, 1.5,
            _against(program, _sizes(MIDDLE_SIZES), "generated")),
        Row(f"{title}, 200,000 leaves / reflection floor", 0.40, 0.30,
            _against(program, _sizes((200000,)), "floor")),
        Row(f"{title}, 20 leaves / reflection floor with its factory kept", 0.25, 0.15,
            _against(program, _sizes((20,)), "floor")),
        Row(f"{title}, 20 leaves: the look for the module's file and the generated-code walk / the same floor",
            None, None, _against(program, _sizes((20,)), "floor", "file_and_generated")),
        Row(f"{title}, cost per leaf, 20,000 leaves / 2,000 leaves", 1.3, 1.1,
            [(f"{program}/size:20000/request", f"{program}/size:2000/request")]),
        Row(f"{title}, memory per document / reflection floor", 1.3, 1.0,
            _against(program, _sizes(SIZES), "floor"), PEAK),
    ]


def _xml_only():
    program = "xml_to_gpb"
    return [
        Row("XML to GPB, leaves not in field order / the same in order", 1.15, 1.0,
            [(f"{program}/mixed:{size}/request", f"{program}/ordered:{size}/request") for size in (200, 20000)]),
        Row("XML to GPB, 10 of 1,000 fields set / reflection floor", 0.12, 0.05,
            _against(program, _sizes((20, 2000), "sparse"), "floor")),
        Row("A field by name, 1,000 fields / 10 fields", 1.2, None,
            [(f"{program}/by_name:1000/request", f"{program}/by_name:10/request")]),
        Row("A field by name, 200 cases / 4 cases", 1.2, None,
            [(f"{program}/case_by_name:200/request", f"{program}/case_by_name:4/request")]),
        Row("Compiler created and destroyed / a prototype looked up and 8 allocations", 1.0, None,
            [(f"{program}/create/request", f"{program}/create/prototype")]),
        Row("Compiler: the look for the module's file alone / the same", None, None,
            [(f"{program}/look/platform", f"{program}/create/prototype")]),
        Row("Compiler created and destroyed / the same, when the look is counted on both sides", 1.0, None,
            [(f"{program}/create/request", f"{program}/create/file_and_prototype")]),
    ]


def _to_json():
    program = "xml_to_json"
    return [
        Row("XML to JSON, 200 to 200,000 leaves / cJSON tree built and printed by hand", 1.0, 0.45,
            _against(program, _sizes(LARGER_SIZES), "cjson_walk")),
        Row("XML to JSON, 20 leaves / cJSON tree built and printed by hand", 1.0, 0.45,
            _against(program, _sizes((20,)), "cjson_walk")),
        Row("XML to JSON, with parsing, 200 to 200,000 leaves / libyang", 0.4, None,
            _against(program, _sizes(LARGER_SIZES, "text"), "libyang")),
        Row("XML to JSON, with parsing, 20 leaves / libyang", 0.4, None,
            _against(program, _sizes((20,), "text"), "libyang")),
        Row("XML to JSON, cost per leaf, 20,000 leaves / 2,000 leaves", 1.3, 1.1,
            [(f"{program}/size:20000/request", f"{program}/size:2000/request")]),
    ]


def _object_tree():
    program = "objtree"
    return [
        Row("Object tree, build and size / one malloc per linked node", 1.3, None,
            _against(program, _sizes(OBJECT_TREE_SIZES, "build"), "malloc", "tree")),
        Row("Object tree, write, sizes known / CodedOutputStream over a flat array", 1.6, None,
            _against(program, _sizes(OBJECT_TREE_SIZES, "write"), "protobuf", "tree")),
        Row("Object tree, write: calls that do nothing, one for each copy / the same", None, None,
            _against(program, _sizes(OBJECT_TREE_SIZES, "write"), "protobuf", "calls")),
        Row("Object tree, read / UnknownFieldSet, nested alike", 0.85, None,
            _against(program, _sizes(OBJECT_TREE_SIZES, "read"), "protobuf", "tree")),
    ]


def rows():
    """All rows in the order of the table."""
    return [
        *_to_gpb("XML to GPB", "xml_to_gpb"),
        *_xml_only(),
        *_to_gpb("JSON to GPB", "json_to_gpb"),
        Row("JSON to GPB, with parsing, 200 to 200,000 leaves / JsonStringToMessage and serializing", 0.20, None,
            _against("json_to_gpb", _sizes(LARGER_SIZES, "text"), "protobuf")),
        Row("JSON to GPB, with parsing, 200 to 200,000 leaves: cJSON parsing alone / the same", None, None,
            _against("json_to_gpb", _sizes(LARGER_SIZES, "text"), "protobuf", "parse")),
        Row("JSON to GPB, with parsing, 20 leaves / JsonStringToMessage and serializing", 0.20, None,
            _against("json_to_gpb", _sizes((20,), "text"), "protobuf")),
        Row("JSON to GPB, with parsing, memory kept by both, 200 to 200,000 leaves / the same", 0.20, None,
            _against("json_to_gpb", _sizes(LARGER_SIZES, "kept"), "protobuf")),
        Row("JSON to GPB, with parsing, memory kept by both, 20 leaves / the same", 0.20, None,
            _against("json_to_gpb", _sizes((20,), "kept"), "protobuf")),
        *_to_json(),
        *_object_tree(),
    ]
